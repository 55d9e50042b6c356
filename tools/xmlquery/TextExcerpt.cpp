#include "TextExcerpt.h"

#include <algorithm>

#include "host/String.h"

namespace XmlQuery {

namespace {
// Characters shown on each side of the column.
const size_t EXCERPT_RADIUS = 30;
}  // namespace

void printExcerpt(const std::string& i_Text, size_t i_Column, const std::string& i_Prefix,
                  std::ostream& o_Output) {
  const std::wstring text = String(i_Text.c_str()).toWide();
  const size_t offset = std::min(i_Column - 1, text.size());
  const size_t begin = offset > EXCERPT_RADIUS ? offset - EXCERPT_RADIUS : 0;
  const size_t end = std::min(text.size(), offset + EXCERPT_RADIUS);
  const std::wstring before = begin > 0 ? L"..." : L"";
  const std::wstring after = end < text.size() ? L"..." : L"";
  o_Output << i_Prefix << "  "
           << String(before + text.substr(begin, end - begin) + after).toNarrow() << '\n'
           << i_Prefix << "  " << std::string(before.size() + offset - begin, ' ') << "^\n";
}

}  // namespace XmlQuery
