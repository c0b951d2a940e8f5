// qtvodb.open, qtvodb.create and the Database object: a context manager over one database of
// the library's registry, closed on exit and saved only by save().
#include "qtvodb_Core.h"

namespace qtvodb {

namespace {

// One opening of a database. The registry's object stays valid until the library is
// finalized; once this opening is closed, name, path and read_only still answer and everything
// else raises "The database is closed.", while other openings of the same file go on.
struct Database {
  CtxPtr ctx;
  odb_Odb* odb;
  bool open = true;

  // The registry's database, refused once this opening is closed.
  odb_Odb& Odb() {
    if (!open) throw LibraryError("The database is closed.", 6);
    return *odb;
  }
};

// Counts an opening of `odb`; under the file's mutex.
Database Opened(const CtxPtr& ctx, odb_Odb* odb) {
  ++ctx->opens[odb];
  return Database{ctx, odb};
}

void Close(Database& db);

// Runs `open` (which returns the registry's database) and counts the opening. A warning that
// Python turns into an error (a warnings filter) ends the opening again, so that no opening
// outlives the Python call that made it.
template <class F>
Database OpenWith(const std::string& absolute, F open) {
  CtxPtr ctx = ContextFor(absolute);
  std::optional<Database> db;
  try {
    Released(*ctx, [&] {
      std::lock_guard<std::mutex> registry(RegistryMutex());
      db = Opened(ctx, open());
    });
  } catch (py::error_already_set&) {
    if (db) Close(*db);
    throw;
  }
  return *db;
}

Database Open(const py::object& path, bool readOnly) {
  const std::string absolute = AbsolutePath(path);
  CtxPtr ctx = ContextFor(absolute);
  return OpenWith(absolute, [&] {
    // A read-only opening of a file open already shares it as the registry would, without the
    // registry's warning that a read-only database stays read-only: that was asked for.
    if (readOnly)
      for (const auto& opened : ctx->opens)
        if (opened.second > 0 && opened.first->isOpen()) return opened.first;
    return &openOdb(odb_String(absolute.c_str(), absolute.size()), readOnly);
  });
}

Database Create(const py::object& path, const std::string& name, const std::string& title,
                const std::string& description) {
  const std::string absolute = AbsolutePath(path);
  return OpenWith(absolute, [&] {
    return &Odb(name.c_str(), title.c_str(), description.c_str(),
                odb_String(absolute.c_str(), absolute.size()));
  });
}

// Ends this opening; the last opening of a database closes its file (what was not saved is
// discarded). Closing again does nothing.
void Close(Database& db) {
  Released(*db.ctx, [&] {
    if (!db.open) return;
    db.open = false;
    auto it = db.ctx->opens.find(db.odb);
    if (it != db.ctx->opens.end() && --it->second > 0) return;
    if (it != db.ctx->opens.end()) db.ctx->opens.erase(it);
    std::lock_guard<std::mutex> registry(RegistryMutex());
    closeOdb(*db.odb);
  });
}

// A text property of the database.
template <class F>
std::string Text(Database& db, F f) {
  return Locked(*db.ctx, [&] { return S((db.odb->*f)()); });
}

}  // namespace

void BindDatabase(py::module_& m) {
  py::class_<Database>(m, "Database",
                       "One output database. A context manager: `with qtvodb.open(path) as db:` "
                       "closes it on exit; nothing is saved but by save().")
      .def_property_readonly("name", [](Database& db) { return Text(db, &odb_Odb::name); })
      .def_property_readonly("title",
                             [](Database& db) { return Text(db, &odb_Odb::analysisTitle); })
      .def_property_readonly("description",
                             [](Database& db) { return Text(db, &odb_Odb::description); })
      .def_property_readonly("path", [](Database& db) { return Text(db, &odb_Odb::path); })
      .def_property_readonly(
          "read_only",
          [](Database& db) { return Locked(*db.ctx, [&] { return db.odb->isReadOnly(); }); })
      .def_property_readonly(
          "is_open",
          [](Database& db) { return Locked(*db.ctx, [&] { return db.open && db.odb->isOpen(); }); })
      .def_property_readonly(
          "steps",
          [](Database& db) {
            return ToMap("Steps", Locked(*db.ctx, [&] {
                           Named<odb_Step> items;
                           for (odb_StepRepositoryIT it(db.Odb().steps()); !it.isDone(); it.next())
                             items.emplace_back(S(it.currentKey()),
                                                Hold(db.ctx, it.currentValue()));
                           return items;
                         }));
          },
          "The steps by name, in the order they were made.")
      .def_property_readonly(
          "parts",
          [](Database& db) {
            return ToMap("Parts",
                         Locked(*db.ctx, [&] { return HoldAll(db.ctx, db.Odb().parts()); }));
          },
          "The parts by name, in name order.")
      .def_property_readonly(
          "root_assembly",
          [](Database& db) {
            return Own(Locked(*db.ctx, [&] { return Hold(db.ctx, db.Odb().rootAssembly()); }));
          })
      .def(
          "create_part",
          [](Database& db, const std::string& name, const py::object& dimension,
             const py::object& type) {
            const auto d = ToEnum<odb_Enum::odb_DimensionEnum>(dimension, "dimension");
            const auto t = ToEnum<odb_Enum::odb_PartTypeEnum>(type, "type");
            return Own(Locked(
                *db.ctx, [&] { return Hold(db.ctx, db.Odb().DiscretePart(name.c_str(), d, t)); }));
          },
          py::arg("name"), py::arg("dimension") = "THREE_D", py::arg("type") = "DEFORMABLE_BODY",
          "Makes an empty part; see Part.add_nodes and Part.add_elements.")
      .def(
          "create_step",
          [](Database& db, const std::string& name, const std::string& description,
             const py::object& domain, double timePeriod, const std::string& previous,
             const std::string& procedure, double totalTime) {
            const auto d = ToEnum<odb_Enum::odb_DomainEnum>(domain, "domain");
            return Own(Locked(*db.ctx, [&] {
              return Hold(db.ctx, db.Odb().Step(name.c_str(), description.c_str(), d, timePeriod,
                                                previous.c_str(), procedure.c_str(), totalTime));
            }));
          },
          py::arg("name"), py::arg("description") = "", py::arg("domain") = "TIME",
          py::arg("time_period") = 1.0, py::arg("previous_step") = "",
          py::arg("procedure") = "*STATIC", py::arg("total_time") = 0.0)
      .def(
          "get_frame",
          [](Database& db, double value, const py::object& match) {
            const auto how = ToEnum<odb_Enum::odb_MatchEnum>(match, "match");
            return Own(
                Locked(*db.ctx, [&] { return Hold(db.ctx, db.Odb().getFrame(value, how)); }));
          },
          py::arg("value"), py::arg("match") = "CLOSEST",
          "The frame of any step whose analysis time is nearest to `value` under `match`.")
      .def(
          "save", [](Database& db) { Released(*db.ctx, [&] { saveOdb(db.Odb()); }); },
          "Commits everything written since the last save (the GIL is released meanwhile).")
      .def(
          "update",
          [](Database& db) { return Released(*db.ctx, [&] { return db.Odb().update(); }); },
          "Reads the steps and frames that another process saved since; True when there were any.")
      .def("close", &Close,
           "Closes the file; what was not saved is discarded. Closing again does nothing.")
      .def(
          "__enter__", [](Database& db) -> Database& { return db; },
          py::return_value_policy::reference)
      .def("__exit__",
           [](Database& db, const py::args&) {
             Close(db);
             return false;
           })
      .def("__repr__", [](Database& db) {
        std::string path;
        bool readOnly = false, open = false;
        Locked(*db.ctx, [&] {
          path = S(db.odb->path());
          readOnly = db.odb->isReadOnly();
          open = db.open && db.odb->isOpen();
        });
        return Repr("Database", Quoted(path) + (readOnly ? " read-only" : " writable") +
                                    (open ? ", open" : ", closed"));
      });

  m.def("open", &Open, py::arg("path"), py::arg("read_only") = true,
        "Opens the database file at `path`, read-only unless read_only=False (a write open that "
        "finds the file locked or not writable opens it read-only, with a warning). Opening a "
        "file this process has open shares that database (its mode too): the file is closed "
        "when its last opening is.");
  m.def("create", &Create, py::arg("path"), py::arg("name") = "", py::arg("title") = "",
        py::arg("description") = "",
        "Creates a new database file at `path` (replacing a file there), writable; `name` "
        "registers it (the path when empty).");
}

}  // namespace qtvodb
