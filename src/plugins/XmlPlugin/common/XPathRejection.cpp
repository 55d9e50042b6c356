#include "XPathRejection.h"

#include <algorithm>
#include <cwctype>
#include <vector>

#include "XPathTokenizer.h"

namespace XmlPlugin {

namespace {

bool isNameStart(wchar_t i_Char) {
  return std::iswalpha(static_cast<wint_t>(i_Char)) || i_Char == L'_';
}

bool isNamePart(wchar_t i_Char) {
  return std::iswalnum(static_cast<wint_t>(i_Char)) || i_Char == L'_' || i_Char == L'-' ||
         i_Char == L'.';
}

bool isQuote(wchar_t i_Char) {
  return i_Char == L'\'' || i_Char == L'"';
}

size_t skipBlanks(const std::wstring& i_Text, size_t i_Offset) {
  while (i_Offset < i_Text.size() && i_Text[i_Offset] == L' ') {
    ++i_Offset;
  }
  return i_Offset;
}

// The end of the literal that opens at i_Offset, npos when it is not closed.
size_t literalEnd(const std::wstring& i_Text, size_t i_Offset) {
  return i_Text.find(i_Text[i_Offset], i_Offset + 1);
}

std::wstring quoted(const std::wstring& i_Text) {
  return L"`" + i_Text + L"`";
}

}  // namespace

XPathRejection::XPathRejection(const std::wstring& i_XPath, int i_Reached) : m_XPath(i_XPath) {
  if (skipBlanks(m_XPath, 0) == m_XPath.size()) {
    set(0, L"the text is blank");
  } else if (!findLimit() && !findBracketOrQuote() && !findUnsupportedName()) {
    describeStop(i_Reached);
  }
}

std::wstring XPathRejection::describe() const {
  return L"XPath text rejected at column " + std::to_wstring(m_Column) + L": " + m_Reason;
}

bool XPathRejection::findLimit() {
  if (m_XPath.size() <= static_cast<size_t>(XPATH_MAX_LENGTH)) {
    return false;
  }
  set(XPATH_MAX_LENGTH,
      L"the text is longer than " + std::to_wstring(XPATH_MAX_LENGTH) + L" characters");
  return true;
}

// Brackets and parentheses outside literals must pair up, and nest at most XPATH_MAX_NESTING
// deep (each predicate, argument list and parenthesis is one level).
bool XPathRejection::findBracketOrQuote() {
  std::vector<size_t> open;
  for (size_t offset = 0; offset < m_XPath.size(); ++offset) {
    const wchar_t c = m_XPath[offset];
    if (isQuote(c)) {
      const size_t end = literalEnd(m_XPath, offset);
      if (end == std::wstring::npos) {
        set(offset, L"the quote " + quoted(std::wstring(1, c)) + L" is not closed");
        return true;
      }
      offset = end;
    } else if (c == L'(' || c == L'[') {
      open.push_back(offset);
      if (open.size() > static_cast<size_t>(XPATH_MAX_NESTING)) {
        set(offset, L"the text nests parentheses, argument lists and predicates deeper than " +
                        std::to_wstring(XPATH_MAX_NESTING) + L" levels");
        return true;
      }
    } else if (c == L')' || c == L']') {
      const wchar_t partner = c == L')' ? L'(' : L'[';
      if (open.empty()) {
        set(offset, L"unbalanced bracket: " + quoted(std::wstring(1, c)) + L" closes nothing");
        return true;
      }
      if (m_XPath[open.back()] != partner) {
        set(offset, L"unbalanced bracket: " + quoted(std::wstring(1, c)) + L" does not close the " +
                        quoted(std::wstring(1, m_XPath[open.back()])) + L" at column " +
                        std::to_wstring(open.back() + 1));
        return true;
      }
      open.pop_back();
    }
  }
  if (!open.empty()) {
    set(open.back(), L"unbalanced bracket: " + quoted(std::wstring(1, m_XPath[open.back()])) +
                         L" is not closed");
    return true;
  }
  return false;
}

// A name before "(" must be a function or a supported node type; a name before "::" a
// supported axis.
bool XPathRejection::findUnsupportedName() {
  for (size_t offset = 0; offset < m_XPath.size(); ++offset) {
    if (isQuote(m_XPath[offset])) {
      offset = literalEnd(m_XPath, offset);
      continue;
    }
    if (!isNameStart(m_XPath[offset]) || (offset > 0 && isNamePart(m_XPath[offset - 1]))) {
      continue;
    }
    size_t end = offset;
    while (end < m_XPath.size() && isNamePart(m_XPath[end])) {
      ++end;
    }
    const std::wstring name = m_XPath.substr(offset, end - offset);
    const size_t next = skipBlanks(m_XPath, end);
    if (m_XPath.compare(next, 2, L"::") == 0 && !XPathTokenizer::knowsAxis(name)) {
      const bool xpath10 = name == L"following-sibling" || name == L"descendant-or-self";
      set(offset, (xpath10 ? L"axis " : L"unknown axis ") + quoted(name + L"::") +
                      (xpath10 ? L" is not supported" : L""));
      return true;
    }
    if (next < m_XPath.size() && m_XPath[next] == L'(' && name != L"text" && name != L"node" &&
        !XPathTokenizer::knowsFunction(name)) {
      const bool nodeType = name == L"comment" || name == L"processing-instruction";
      const bool xpath10 = name == L"id" || name == L"lang" || name == L"namespace-uri";
      set(offset, nodeType  ? quoted(name + L"()") + L" is not supported"
                  : xpath10 ? L"function " + quoted(name) + L" is not supported"
                            : L"unknown function " + quoted(name));
      return true;
    }
    offset = end - 1;
  }
  return false;
}

void XPathRejection::describeStop(int i_Reached) {
  const size_t stop = i_Reached < 0 ? 0 : std::min(static_cast<size_t>(i_Reached), m_XPath.size());
  const size_t at = skipBlanks(m_XPath, stop);
  if (at == m_XPath.size()) {
    set(stop, L"the text ends where more is needed");
    return;
  }
  size_t end = at + 1;
  if (isNamePart(m_XPath[at])) {
    while (end < m_XPath.size() && isNamePart(m_XPath[end])) {
      ++end;
    }
  }
  const std::wstring found = m_XPath.substr(at, end - at);
  // Two ways of writing XPath 1.0 that this grammar reads otherwise.
  if (at > 0 && m_XPath[at - 1] == L'.' && std::iswdigit(static_cast<wint_t>(m_XPath[at]))) {
    set(at - 1, L"a number starts with a digit: write " + quoted(L"0." + found));
  } else if (stop >= 2 && m_XPath[stop - 1] == L'-' && m_XPath[stop - 2] == L' ') {
    size_t nameEnd = stop - 2;
    while (nameEnd > 0 && m_XPath[nameEnd - 1] == L' ') {
      --nameEnd;
    }
    size_t nameBegin = nameEnd;
    while (nameBegin > 0 && isNamePart(m_XPath[nameBegin - 1])) {
      --nameBegin;
    }
    const std::wstring name = m_XPath.substr(nameBegin, nameEnd - nameBegin);
    set(at, L"a blank and " + quoted(L"-") + L" after the name " + quoted(name) +
                L" continue the name: write " + quoted(L"(" + name + L") - " + found));
  } else {
    set(at, L"unexpected " + quoted(found));
  }
}

void XPathRejection::set(size_t i_Offset, const std::wstring& i_Reason) {
  m_Column = static_cast<int>(i_Offset) + 1;
  m_Reason = i_Reason;
}

}  // namespace XmlPlugin
