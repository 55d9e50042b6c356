#include "XPathCompiledPath.h"

#include "XPathNumberText.h"
#include "XPathParser.h"
#include "host/WideChar.h"

namespace XmlPlugin {

namespace {

struct WideBufferFree {
  void operator()(wchar_t* i_pBuffer) const { i_free(i_pBuffer); }
};

}  // namespace

XPathCompiledPath::XPathCompiledPath(const String& i_XPath) : m_Text(i_XPath) {
  m_Status = split();
  for (const String& path : m_Paths) {
    build(path);
  }
}

TErrorCode XPathCompiledPath::split() {
  std::unique_ptr<wchar_t, WideBufferFree> pBuffer(i_wcsdup(m_Text.c_str()));
  if (!pBuffer) {
    return XPATH_SPLIT_ERROR;
  }
  const XPathParser parser;
  wchar_t* pState = nullptr;
  for (const wchar_t* pPiece = i_wcstok(pBuffer.get(), L"|", &pState); pPiece != nullptr;
       pPiece = i_wcstok(nullptr, L"|", &pState)) {
    String path(pPiece);
    path.trim();
    if (path.startsWith(String(L"/")) && path.charAt(1) != L'/') {
      path = path.substring(1);
    }
    const bool deep = path.startsWith(String(L"//"));
    if (deep) {
      path = path.substring(2);
    }
    if (!path.endsWith(String(L"text()")) && !endsWithAttribute(path)) {
      path.concat(L"/endfunction()");
    }
    m_StepCounts.push_back(parser.getStepCount(path));
    m_Paths.push_back(deep ? String(L"//").concat(path) : path);
  }
  return m_Paths.size() == m_StepCounts.size() ? 0 : XPATH_SPLIT_ERROR;
}

void XPathCompiledPath::build(const String& i_Path) {
  XPathParser parser;
  PreparedPath prepared;
  prepared.m_Tokens = parser.getTokens(i_Path);
  const std::vector<String>& tokens = prepared.m_Tokens;
  prepared.m_Steps.resize(tokens.size());
  for (unsigned int index = 0; index < tokens.size(); ++index) {
    BuiltStep& built = prepared.m_Steps[index];
    built.m_Result = XPathParser::getStep(tokens, index, built.m_Step);
    const XPathStep* pStep = built.m_Step.get();
    if (index > 0 && prepared.m_FirstRepeatedStep == 0 && pStep != nullptr &&
        pStep->getAxis() != child && pStep->getAxis() != attribute) {
      prepared.m_FirstRepeatedStep = index;
    }
    const XPathStep* pBefore = index > 1 ? prepared.m_Steps[index - 1].m_Step.get() : nullptr;
    if (pBefore != nullptr && !pBefore->isAbsoluteDeepSearch() && pStep != nullptr &&
        pStep->getStepType() == leaf) {
      m_AsksForExcludedParents = true;
    }
  }
  const size_t count = prepared.m_Steps.size();
  const XPathStep* pLastMid = count >= 3 ? prepared.m_Steps[count - 2].m_Step.get() : nullptr;
  const XPathStep* pLeaf = count >= 3 ? prepared.m_Steps[count - 1].m_Step.get() : nullptr;
  prepared.m_ExcludedChildrenGiveNothing =
      pLastMid != nullptr && pLeaf != nullptr && pLastMid->getStepType() == mid &&
      pLastMid->getAxis() == child && pLastMid->getPredicates().empty() &&
      !pLastMid->isAbsoluteDeepSearch() && pLeaf->getStepType() == leaf &&
      (pLeaf->getAxis() == child || pLeaf->getAxis() == attribute) &&
      pLeaf->getPredicates().empty();
  m_Prepared.push_back(std::move(prepared));
}

String XPathCompiledPath::getText(long i_Anchor) const {
  return withAnchor(m_Text, i_Anchor);
}

String XPathCompiledPath::withAnchor(const String& i_Text, long i_Anchor) {
  const int mark = i_Anchor > 0 ? i_Text.indexOf(XPATH_ANCHOR_MARK) : -1;
  if (mark < 0) {
    return i_Text;
  }
  String text = mark > 0 ? i_Text.substring(0, mark - 1) : String();
  return text.concat(formatInteger(i_Anchor)).concat(i_Text.substring(mark + 1));
}

std::vector<String> XPathCompiledPath::withAnchor(const std::vector<String>& i_Texts,
                                                  long i_Anchor) {
  std::vector<String> texts;
  texts.reserve(i_Texts.size());
  for (const String& text : i_Texts) {
    texts.push_back(withAnchor(text, i_Anchor));
  }
  return texts;
}

bool XPathCompiledPath::isAbsolute() const {
  return m_Text.length() > 1 && m_Text.charAt(0) == L'/' && m_Text.charAt(1) != L'/';
}

unsigned int XPathCompiledPath::firstStepReachingAgain(size_t i_Path) const {
  return m_Prepared[i_Path].m_FirstRepeatedStep;
}

bool XPathCompiledPath::endsWithAttribute(const String& i_Path) {
  XPathParser parser;
  std::unique_ptr<XPathStep> pLast;
  parser.getStep(i_Path, parser.getStepCount(i_Path), pLast);
  return pLast && pLast->getAxis() == attribute;
}

}  // namespace XmlPlugin
