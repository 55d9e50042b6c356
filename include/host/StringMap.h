// The host's ordered map of attribute names to values.
#pragma once

#include <cstdint>

#include "host/String.h"
#include "host/Types.h"

class StringMap {
 public:
  // Entries are numbered 0 .. m_Count - 1 in the order the attributes stand in the element.
  // i_FirstNumber is the document-order number that the lookup by name reports for entry 0.
  StringMap(const String* i_Names, const String* i_Values, int32_t i_Count, int32_t i_FirstNumber);
  StringMap();  // empty

  // Fills name and value of entry i_Index; HOST_ERROR_OUT_OF_RANGE when there is none.
  TErrorCode getEntry(int i_Index, String& o_Name, String& o_Value) const;

  // Looks an entry up by exact name: fills its value and its document-order number written
  // as decimal text. HOST_ERROR_KEY_NOT_FOUND (-1001) when the name is absent.
  TErrorCode getEntry(const String& i_Name, String& o_Value, String& o_Number) const;

  int32_t m_Count;

 private:
  int32_t m_FirstNumber;  // beside m_Count, so that the two share one word
  const String* m_Names;  // not owned: the tree that holds the map owns the storage
  const String* m_Values;
};
