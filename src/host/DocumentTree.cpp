#include "DocumentTree.h"

StringMap* noAttributes() {
  static StringMap s_Empty;
  return &s_Empty;
}
