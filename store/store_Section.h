// store_Section: the section categories of a file with their section points, and its sections.
//
// Free functions over an open store_Database, each one or two statements inside the database's
// open transaction. A section's row holds the columns of every kind; those its kind does not use
// are NULL. One thread at a time.
#ifndef STORE_SECTION_H
#define STORE_SECTION_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class store_Database;

struct store_SectionPointRecord {
  int number = 0;
  std::string description;
};

struct store_SectionCategoryRecord {
  std::int64_t id = 0;  // assigned by the store
  std::string name;
  std::string description;
  std::vector<store_SectionPointRecord> points;  // ascending number
};

struct store_SectionRecord {
  std::string name;
  int kind = 0;  // odb_Section::Kind
  std::string material;
  // Absent is NULL in the file: the thickness and integration points are a shell's, the
  // dimensions a beam's.
  std::optional<double> thickness;
  std::optional<int> integrationPoints;
  std::string profile;
  std::optional<std::vector<double>> dimensions;
  // Read only: the stored dimensions are not a whole number of values, and are not read.
  bool damagedDimensions = false;
};

// Every stored category, by id, with its points.
std::vector<store_SectionCategoryRecord> store_SectionCategories(store_Database& db);
// Adds a category with no points and returns its id.
std::int64_t store_AddSectionCategory(store_Database& db, const std::string& name,
                                      const std::string& description);
void store_AddSectionPoint(store_Database& db, std::int64_t categoryId,
                           const store_SectionPointRecord& point);

// Every stored section.
std::vector<store_SectionRecord> store_Sections(store_Database& db);
void store_AddSection(store_Database& db, const store_SectionRecord& section);

#endif
