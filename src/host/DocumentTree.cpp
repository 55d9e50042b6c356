#include "DocumentTree.h"

StringMap* TreeStorage::noAttributes() {
  static StringMap s_Empty;
  return &s_Empty;
}
