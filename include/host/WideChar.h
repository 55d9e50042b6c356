// The host's wide-character helpers. Buffers they return are freed with i_free.
#pragma once

#include <cwchar>

wchar_t* i_wcsdup(const wchar_t* i_Text);
wchar_t* i_wcstok(wchar_t* io_Text, const wchar_t* i_Delimiters, wchar_t** io_State);
long i_wcstol(const wchar_t* i_Text, wchar_t** o_End, int i_Base);
void i_free(void* i_Pointer);
