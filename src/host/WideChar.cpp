#include "host/WideChar.h"

#include <cstdlib>

wchar_t* i_wcsdup(const wchar_t* i_Text) {
  return i_Text == nullptr ? nullptr : wcsdup(i_Text);
}

wchar_t* i_wcstok(wchar_t* io_Text, const wchar_t* i_Delimiters, wchar_t** io_State) {
  return std::wcstok(io_Text, i_Delimiters, io_State);
}

long i_wcstol(const wchar_t* i_Text, wchar_t** o_End, int i_Base) {
  return std::wcstol(i_Text, o_End, i_Base);
}

void i_free(void* i_Pointer) {
  std::free(i_Pointer);
}
