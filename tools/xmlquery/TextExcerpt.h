// A line of a text around a column, and a caret under that column.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace XmlQuery {

// Writes the text (UTF-8) around the 1-based character column i_Column, then a caret under
// it, each line after i_Prefix and an indent of two blanks.
void printExcerpt(const std::string& i_Text, size_t i_Column, const std::string& i_Prefix,
                  std::ostream& o_Output);

}  // namespace XmlQuery
