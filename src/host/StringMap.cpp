#include "host/StringMap.h"

StringMap::StringMap(const String* i_Names, const String* i_Values, int32_t i_Count,
                     int32_t i_FirstNumber)
    : m_Count(i_Count), m_FirstNumber(i_FirstNumber), m_Names(i_Names), m_Values(i_Values) {}

StringMap::StringMap() : StringMap(nullptr, nullptr, 0, 0) {}

TErrorCode StringMap::getEntry(int i_Index, String& o_Name, String& o_Value) const {
  if (i_Index < 0 || i_Index >= m_Count) {
    return HOST_ERROR_OUT_OF_RANGE;
  }
  o_Name = m_Names[i_Index];
  o_Value = m_Values[i_Index];
  return 0;
}

TErrorCode StringMap::getEntry(const String& i_Name, String& o_Value, String& o_Number) const {
  for (int32_t i = 0; i < m_Count; ++i) {
    if (m_Names[i] == i_Name) {
      o_Value = m_Values[i];
      o_Number.assignDecimal(static_cast<long>(m_FirstNumber) + i);
      return 0;
    }
  }
  return HOST_ERROR_KEY_NOT_FOUND;
}
