// The message of the odb_Exception that a call throws, for tests of exact texts.
#ifndef TESTS_THROWNMESSAGE_H
#define TESTS_THROWNMESSAGE_H

#include <string>

#include "odb_Exception.h"

template <class F>
std::string MessageOf(F&& call) {
  try {
    call();
  } catch (const odb_Exception& e) {
    return e.JournalMessage().CStr();
  }
  return "(nothing thrown)";
}

#endif
