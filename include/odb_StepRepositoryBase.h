// odb_StepRepositoryBase<Step>: the step collection of a database, kept in the order in which
// steps were added (the order of the analysis), and its iterator.
//
// A list of steps and, beside it, the sequence of their names: element i of one belongs to
// element i of the other. Lookups by name scan the names (steps are few); iteration walks the
// indices in order. Copying is O(1) and shares both lists. The database's step repository
// derives from this and adds the step creators. One thread at a time.
#ifndef ODB_STEPREPOSITORYBASE_H
#define ODB_STEPREPOSITORYBASE_H

#include "cow_1DArrayList.h"
#include "odb_Exception.h"
#include "odb_Export.h"
#include "odb_Message.h"
#include "odb_Sequence.h"

// The messages of the step repository and its creators.
enum odb_StepRepositoryEnm : int {
  odb_StepRepository_NO_STEP = 0,           // %s: the name looked up
  odb_StepRepository_INVALID_NAME = 1,      //
  odb_StepRepository_INVALID_PREVIOUS = 2,  //
  odb_StepRepository_ITERATOR_DONE = 3,     //
  odb_StepRepository_PREVIOUS_MISSING = 4,  // %s: the previous step's name
  odb_StepRepository_ALREADY_EXISTS = 5     // %s: the new step's name
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_StepRepositoryEnm, 1> {
  static const uti_LabelRow<odb_StepRepositoryEnm> rows[];
};

template <class Step>
class QTVODB_EXPORT odb_StepRepositoryBase {
 public:
  int size() const { return m_steps.Length(); }
  bool isMember(const odb_String& name) const { return m_names.isMember(name); }

  // The step for writing; throws "No step named "NAME" in StepContainer." when absent.
  Step& get(const odb_String& name) { return m_steps.Get(IndexOf(name, 85)); }
  Step& operator[](const odb_String& name) { return get(name); }
  const Step& constGet(const odb_String& name) const { return m_steps.ConstGet(IndexOf(name, 99)); }

  const cow_1DArrayList<Step>& stepList() const { return m_steps; }
  const odb_SequenceString& stepNames() const { return m_names; }

  // Adds a step at the end; false, changing nothing, when the name is taken. The step creators
  // call this after their own checks.
  bool append(const odb_String& name, const Step& step) {
    if (isMember(name)) return false;
    m_steps.Append(step);
    m_names.append(name);
    return true;
  }

 private:
  int IndexOf(const odb_String& name, int site) const {
    int i = m_names.findFirst(name);
    if (i == m_names.size())
      odb_ThrowMessage(odb_CatalogueMessage(odb_StepRepository_NO_STEP, {name}),
                       "odb/impl/odb_StepRepository", site);
    return i;
  }

  cow_1DArrayList<Step> m_steps;
  odb_SequenceString m_names;
};

// Walks the steps in the order in which they were added.
template <class Step>
class QTVODB_EXPORT odb_StepRepositoryIterator {
 public:
  explicit odb_StepRepositoryIterator(const odb_StepRepositoryBase<Step>& steps) : m_steps(steps) {}
  void first() { m_i = 0; }
  void next() { ++m_i; }
  bool isDone() const { return m_i >= m_steps.size(); }
  // The current name and step; after the end both throw "StepContainerIterator done.".
  const odb_String& currentKey() const {
    CheckNotDone();
    return m_steps.stepNames()[m_i];
  }
  const Step& currentValue() const {
    CheckNotDone();
    return m_steps.stepList().ConstGet(m_i);
  }

 private:
  void CheckNotDone() const {
    if (isDone())
      odb_ThrowMessage(odb_CatalogueMessage(odb_StepRepository_ITERATOR_DONE),
                       "odb/impl/odb_StepRepository", 211);
  }

  odb_StepRepositoryBase<Step> m_steps;
  int m_i = 0;
};

#endif
