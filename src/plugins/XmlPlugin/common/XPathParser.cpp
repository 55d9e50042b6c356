#include "XPathParser.h"

namespace XmlPlugin {

unsigned int XPathParser::getStepCount(const String& i_Path) const {
  unsigned int count = 0;
  for (int slash = i_Path.indexOf(L'/'); slash >= 0;) {
    ++count;
    const int next = i_Path.charAt(slash + 1) == L'/' ? slash + 2 : slash + 1;
    slash = i_Path.indexOf(L'/', next);
  }
  return count;
}

String XPathParser::getToken(const String& i_Path, bool i_Peek) {
  const int length = i_Path.length();
  const int begin = static_cast<int>(m_Position);
  bool inBrackets = false;
  for (int position = begin; position < length; ++position) {
    const wchar_t character = i_Path.charAt(position);
    if (character == L'[') {
      inBrackets = true;
    } else if (character == L']') {
      inBrackets = false;
    } else if (character == L'/' && !inBrackets && i_Path.charAt(position + 1) != L'/' &&
               (position == 0 || i_Path.charAt(position - 1) != L'/')) {
      m_Position = static_cast<unsigned int>(i_Peek ? position : position + 1);
      return i_Path.substring(begin, position - 1);
    }
  }
  m_Position = static_cast<unsigned int>(length);
  const String token = i_Path.substring(begin);
  return token.startsWith(String(L"/")) ? String() : token;
}

std::vector<String> XPathParser::getTokens(const String& i_Path) {
  m_Position = 0;
  std::vector<String> tokens;
  for (String token = getToken(i_Path, false); !token.isEmpty(); token = getToken(i_Path, false)) {
    tokens.push_back(token);
  }
  return tokens;
}

TErrorCode XPathParser::getStep(const String& i_Path, unsigned int i_Index,
                                std::unique_ptr<XPathStep>& o_Step) {
  return getStep(getTokens(i_Path), i_Index, o_Step);
}

TErrorCode XPathParser::getStep(const std::vector<String>& i_Tokens, unsigned int i_Index,
                                std::unique_ptr<XPathStep>& o_Step) {
  o_Step.reset();
  if (i_Index >= i_Tokens.size()) {
    return HOST_ERROR_OUT_OF_RANGE;
  }
  const StepType type = i_Index == 0 ? root : (i_Index + 1 == i_Tokens.size() ? leaf : mid);
  const String previous = i_Index > 0 ? i_Tokens[i_Index - 1] : String();
  String token = i_Tokens[i_Index];
  bool deep = false;
  if (token.length() >= 2) {
    if (token.startsWith(String(L"//"))) {
      token = token.substring(2);
      deep = true;
    } else if (token.startsWith(String(L"/"))) {
      token = token.substring(1);
    }
  }
  const TErrorCode result = XPathStep::get(token, previous, type, o_Step);
  if (deep && o_Step) {
    o_Step->setAbsoluteDeepSearch(true);
  }
  return result;
}

}  // namespace XmlPlugin
