// The text is cut into tokens (literals, numbers, names, punctuation, each knowing whether a
// blank stands before it and how deep in predicates it is), and each rule reads the tokens.
#include "XPathLint.h"

#include <cwctype>

#include "host/String.h"

namespace XmlQuery {

namespace {

enum Kind { Literal, Number, Name, Punctuation };

struct Token {
  Kind m_Kind;
  std::wstring m_Text;
  size_t m_Offset;
  bool m_BlankBefore;
  int m_PredicateDepth;  // predicates this token is inside of
};

bool isNameChar(wchar_t i_Char) {
  return std::iswalnum(static_cast<wint_t>(i_Char)) || i_Char == L'_' || i_Char == L'-' ||
         i_Char == L'.' || i_Char == L':';
}

// Longest first.
const wchar_t* const PUNCTUATION[] = {L"//", L"::", L"!=", L"<=", L">=", L"..", L"/", L"[",
                                      L"]",  L"(",  L")",  L",",  L"=",  L"<",  L">", L"+",
                                      L"-",  L"*",  L"|",  L"@",  L".",  L"$"};

std::vector<Token> tokenize(const std::wstring& i_Text) {
  std::vector<Token> tokens;
  int depth = 0;
  size_t at = 0;
  while (at < i_Text.size()) {
    const bool blank = at > 0 && i_Text[at - 1] == L' ';
    const wchar_t c = i_Text[at];
    size_t end = at + 1;
    Kind kind = Punctuation;
    if (c == L' ') {
      ++at;
      continue;
    }
    if (c == L'\'' || c == L'"') {
      const size_t close = i_Text.find(c, at + 1);
      end = close == std::wstring::npos ? i_Text.size() : close + 1;
      kind = Literal;
    } else if (std::iswdigit(static_cast<wint_t>(c))) {
      while (end < i_Text.size() &&
             (std::iswdigit(static_cast<wint_t>(i_Text[end])) || i_Text[end] == L'.')) {
        ++end;
      }
      kind = Number;
    } else if (std::iswalpha(static_cast<wint_t>(c)) || c == L'_') {
      // A name ends before "::" (an axis).
      while (end < i_Text.size() && isNameChar(i_Text[end]) && i_Text.compare(end, 2, L"::") != 0) {
        ++end;
      }
      kind = Name;
    } else {
      for (const wchar_t* pText : PUNCTUATION) {
        const std::wstring text(pText);
        if (i_Text.compare(at, text.size(), text) == 0) {
          end = at + text.size();
          break;
        }
      }
    }
    const std::wstring text = i_Text.substr(at, end - at);
    if (text == L"]") {
      --depth;
    }
    tokens.push_back({kind, text, at, blank, depth});
    if (text == L"[") {
      ++depth;
    }
    at = end;
  }
  return tokens;
}

class Linter {
 public:
  explicit Linter(const std::string& i_XPath)
      : m_Text(String(i_XPath.c_str()).toWide()), m_Tokens(tokenize(m_Text)) {}

  std::vector<LintWarning> run() {
    for (size_t index = 0; index < m_Tokens.size(); ++index) {
      checkBlankBeforePath(index);
      checkAndChain(index);
      checkPredicates(index);
      checkDoubleSlash(index);
      checkSlashInPredicate(index);
    }
    return m_Warnings;
  }

 private:
  const Token* at(size_t i_Index) const {
    return i_Index < m_Tokens.size() ? &m_Tokens[i_Index] : nullptr;
  }
  bool is(size_t i_Index, const wchar_t* i_pText) const {
    return i_Index < m_Tokens.size() && m_Tokens[i_Index].m_Text == i_pText;
  }
  // A token after which an operand ends: what follows is an operator, not a path.
  bool endsOperand(size_t i_Index) const {
    const Token& token = m_Tokens[i_Index];
    return token.m_Kind != Punctuation || token.m_Text == L")" || token.m_Text == L"]" ||
           token.m_Text == L"." || token.m_Text == L"..";
  }
  bool isOperatorWord(size_t i_Index) const {
    const std::wstring& text = m_Tokens[i_Index].m_Text;
    return i_Index > 0 && endsOperand(i_Index - 1) && m_Tokens[i_Index].m_Kind == Name &&
           (text == L"and" || text == L"or" || text == L"div" || text == L"mod");
  }
  // Whether a relative location path starts at the token.
  bool startsRelativePath(size_t i_Index) const {
    const Token& token = m_Tokens[i_Index];
    if (i_Index > 0 && endsOperand(i_Index - 1) && !isOperatorWord(i_Index - 1)) {
      return false;
    }
    if (token.m_Kind == Name) {
      return !isOperatorWord(i_Index) && !is(i_Index + 1, L"(");
    }
    return token.m_Text == L"@" || token.m_Text == L"." || token.m_Text == L".." ||
           token.m_Text == L"*";
  }
  // The first token from i_Index on that ends an operand at i_Index's level: "and", "or", ","
  // or a closing bracket of an enclosing level; the token count when none does.
  size_t operandEnd(size_t i_Index) const {
    int level = 0;
    size_t end = i_Index;
    for (; end < m_Tokens.size(); ++end) {
      const std::wstring& text = m_Tokens[end].m_Text;
      if (text == L"(" || text == L"[") {
        ++level;
      } else if (text == L")" || text == L"]") {
        if (--level < 0) {
          break;
        }
      } else if (level == 0 &&
                 (text == L"," || ((text == L"and" || text == L"or") && isOperatorWord(end)))) {
        break;
      }
    }
    return end;
  }
  // The text of the operand that starts at i_Index.
  std::wstring operandText(size_t i_Index) const {
    const size_t end = operandEnd(i_Index);
    const size_t stop = end < m_Tokens.size() ? m_Tokens[end].m_Offset : m_Text.size();
    std::wstring operand =
        m_Text.substr(m_Tokens[i_Index].m_Offset, stop - m_Tokens[i_Index].m_Offset);
    while (!operand.empty() && operand.back() == L' ') {
      operand.pop_back();
    }
    return operand;
  }
  // The text of a step: from a token to the next "/", "//", "[" or operator.
  std::wstring stepText(size_t i_Index) const {
    size_t end = i_Index;
    while (end < m_Tokens.size() && !(end > i_Index && m_Tokens[end].m_BlankBefore) &&
           (m_Tokens[end].m_Kind == Name || is(end, L"@") || is(end, L"::") || is(end, L"*"))) {
      ++end;
    }
    std::wstring step;
    for (size_t index = i_Index; index < end; ++index) {
      step += m_Tokens[index].m_Text;
    }
    return step;
  }

  void warn(size_t i_Index, const char* i_Rule, const std::wstring& i_Message,
            const std::wstring& i_Instead) {
    m_Warnings.push_back({static_cast<int>(m_Tokens[i_Index].m_Offset) + 1, i_Rule,
                          String(i_Message).toNarrow(), String(i_Instead).toNarrow()});
  }

  // Inside a predicate a path operand keeps the blanks before it and then names nothing.
  void checkBlankBeforePath(size_t i_Index) {
    const Token& token = m_Tokens[i_Index];
    if (token.m_PredicateDepth == 0 || !token.m_BlankBefore || !startsRelativePath(i_Index)) {
      return;
    }
    const std::wstring operand = operandText(i_Index);
    const bool afterWord = i_Index > 0 && isOperatorWord(i_Index - 1);
    warn(i_Index, "blank-before-path",
         L"the blank before the path `" + stepText(i_Index) +
             L"` inside a predicate makes the path select nothing",
         afterWord ? L"put the operand in parentheses: `(" + operand + L")`"
                   : L"write the path without the blank before it: `" + operand + L"`");
  }

  // The emitting pass of an and-chain may drop every operand after the second.
  void checkAndChain(size_t i_Index) {
    if (!is(i_Index, L"and") || !isOperatorWord(i_Index)) {
      return;
    }
    const size_t next = operandEnd(i_Index + 1);
    if (is(next, L"and") && !m_AndChainWarned) {
      warn(next, "and-chain", L"the operands of `a and b and c` after the second can be dropped",
           L"put parentheses around the first two: `(a and b) and c`");
      m_AndChainWarned = true;
    }
  }

  void checkPredicates(size_t i_Index) {
    if (!is(i_Index, L"[")) {
      return;
    }
    const Token& token = m_Tokens[i_Index];
    if (token.m_PredicateDepth > 0) {
      warn(i_Index, "nested-predicate", L"a predicate inside a predicate selects nothing",
           L"write the inner test as a path: `[allow/@user='root']` for `[allow[@user='root']]`");
    } else if (i_Index > 0 && is(i_Index - 1, L"]") && testsANode(i_Index)) {
      warn(i_Index, "second-predicate",
           L"a second predicate tests the node at the candidate's position among all nodes, not "
           L"the candidate",
           L"join the predicates: `[(a) and (b)]` for `[a][b]`");
    } else if (i_Index > 1 && m_Tokens[i_Index - 1].m_Kind == Name &&
               (is(i_Index - 2, L"@") ||
                (is(i_Index - 2, L"::") && i_Index > 2 && is(i_Index - 3, L"attribute")))) {
      warn(i_Index, "attribute-predicate", L"a predicate on an attribute step is ignored",
           L"test the attribute in its element's predicate: `a[@port='443']/@port` for "
           L"`a/@port[.='443']`");
    }
  }

  // Whether the predicate that opens at i_Index refers to a node (not just a number).
  bool testsANode(size_t i_Index) const {
    for (size_t index = i_Index + 1; index < m_Tokens.size() && !is(index, L"]"); ++index) {
      if (startsRelativePath(index)) {
        return true;
      }
    }
    return false;
  }

  void checkDoubleSlash(size_t i_Index) {
    if (!is(i_Index, L"//")) {
      return;
    }
    const bool afterStep = i_Index > 0 && !m_Tokens[i_Index].m_BlankBefore &&
                           endsOperand(i_Index - 1) && !is(i_Index - 1, L")");
    if (is(i_Index + 1, L"@")) {
      warn(i_Index, "descendant-attribute", L"`//@name` selects nothing",
           L"name the element, or any element: `//*/@" + stepText(i_Index + 2) + L"`");
    } else if (afterStep) {
      warn(i_Index, "descendant-step", L"`//` after the first step selects nothing",
           L"use the descendant axis: `/descendant::" + stepText(i_Index + 1) + L"`");
    }
  }

  // A "/" anywhere inside a predicate is counted as a step separator when the engine looks
  // for the path's last step, so a path that ends on an attribute finds nothing.
  void checkSlashInPredicate(size_t i_Index) {
    if (!is(i_Index, L"[") || m_Tokens[i_Index].m_PredicateDepth > 0) {
      return;
    }
    bool slash = false;
    bool inValue = false;
    size_t index = i_Index + 1;
    for (; index < m_Tokens.size() && m_Tokens[index].m_PredicateDepth > 0; ++index) {
      if (m_Tokens[index].m_Text.find(L'/') != std::wstring::npos) {
        slash = true;
        inValue = inValue || m_Tokens[index].m_Kind == Literal;
      }
    }
    if (!slash) {
      return;
    }
    // Follow the path to its last step.
    bool attributeLeaf = false;
    for (++index; index < m_Tokens.size() && !m_Tokens[index].m_BlankBefore; ++index) {
      const std::wstring& text = m_Tokens[index].m_Text;
      if (text == L"/" || text == L"//") {
        attributeLeaf =
            is(index + 1, L"@") || (is(index + 1, L"attribute") && is(index + 2, L"::"));
      } else if (text == L"[" || text == L"]" || text == L"(" || text == L")" || text == L"|" ||
                 text == L"," || text == L"=") {
        if (text != L"[") {
          break;
        }
        while (index < m_Tokens.size() && !is(index, L"]")) {
          ++index;
        }
      }
    }
    if (attributeLeaf) {
      warn(i_Index, "slash-in-predicate",
           L"a `/` inside a predicate of a path that ends on an attribute makes the path select "
           L"nothing",
           inValue ? L"test the value without a `/`: `[starts-with(@protocol,'AJP')]` for "
                     L"`[@protocol='AJP/1.3']`"
                   : L"end the path on the element the predicate tests and step back: "
                     L"`//allow[@user='root']/../@enabled` for "
                     L"`//policy[allow/@user='root']/@enabled`");
    }
  }

  std::wstring m_Text;
  std::vector<Token> m_Tokens;
  std::vector<LintWarning> m_Warnings;
  bool m_AndChainWarned = false;
};

}  // namespace

std::vector<LintWarning> lintXPath(const std::string& i_XPath) {
  return Linter(i_XPath).run();
}

}  // namespace XmlQuery
