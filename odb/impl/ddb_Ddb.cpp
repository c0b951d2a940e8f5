#include "ddb_Ddb.h"

#include <utility>

#include "ddb_DdbData.h"

ddb_Ddb::ddb_Ddb() = default;
ddb_Ddb::~ddb_Ddb() = default;
ddb_Ddb::ddb_Ddb(const ddb_Ddb& other) = default;
ddb_Ddb& ddb_Ddb::operator=(const ddb_Ddb& other) = default;

bool ddb_Ddb::isNull() const {
  return !m_data || !m_data->store;
}

bool ddb_Ddb::operator==(const ddb_Ddb& other) const {
  return ddb_DdbAccess::Store(*this) == ddb_DdbAccess::Store(other);
}

ddb_Ddb ddb_DdbAccess::Make(std::shared_ptr<store_Database> store) {
  ddb_Ddb ddb;
  if (store) ddb.m_data = std::make_shared<const ddb_DdbData>(ddb_DdbData{std::move(store)});
  return ddb;
}

const std::shared_ptr<store_Database>& ddb_DdbAccess::Store(const ddb_Ddb& ddb) {
  static const std::shared_ptr<store_Database> none;
  return ddb.m_data ? ddb.m_data->store : none;
}
