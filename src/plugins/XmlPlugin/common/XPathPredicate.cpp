#include "XPathPredicate.h"

#include <map>

#include "PluginTracer.h"
#include "XPathCompiledPath.h"
#include "XPathEvaluationContext.h"
#include "XPathEvaluationObserver.h"
#include "XPathExpressionCache.h"
#include "XPathNodeFetch.h"
#include "XPathNodeListSpare.h"
#include "XPathNumberText.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

bool isBlank(wchar_t i_Character) {
  return i_Character == L' ';
}

}  // namespace

XPathPredicate::XPathPredicate(const String& i_Expression)
    : XPathPredicate(std::make_shared<const String>(i_Expression), 0, i_Expression.length() - 1) {}

XPathPredicate::XPathPredicate(const std::shared_ptr<const String>& i_pText, int i_Open,
                               int i_Close)
    : m_pText(i_pText), m_Open(i_Open), m_Close(i_Close), m_AnchoredPosition(anchoredPosition()) {}

// The text is read like the expression reads it: blanks between the parts do not matter.
long XPathPredicate::anchoredPosition() const {
  int end = m_Close;
  while (end > m_Open + 1 && isBlank(m_pText->charAt(end - 1))) {
    --end;
  }
  const auto skipBlanks = [&](int i_At) {
    while (i_At < end && isBlank(m_pText->charAt(i_At))) {
      ++i_At;
    }
    return i_At;
  };
  const String function(L"position()");
  int at = skipBlanks(m_Open + 1);
  if (!m_pText->startsWith(function, at)) {
    return 0;
  }
  at = skipBlanks(at + function.length());
  if (at == end || m_pText->charAt(at) != L'=') {
    return 0;
  }
  at = skipBlanks(at + 1);
  if (at + 1 == end && m_pText->charAt(at) == XPATH_ANCHOR_MARK) {
    return -1;
  }
  // Nine digits at most, so that the number stays exact.
  const int digits = end - at;
  if (digits < 1 || digits > 9) {
    return 0;
  }
  long position = 0;
  for (; at < end; ++at) {
    const wchar_t digit = m_pText->charAt(at);
    if (digit < L'0' || digit > L'9') {
      return 0;
    }
    position = position * 10 + (digit - L'0');
  }
  return position;
}

long XPathPredicate::getAnchoredPosition(const XPathEvaluationContext& i_Context) const {
  return m_AnchoredPosition < 0 ? i_Context.getAnchor() : m_AnchoredPosition;
}

String XPathPredicate::condition(const XPathEvaluationContext& i_Context) const {
  const String text = m_pText->substring(m_Open + 1, m_Close - 1);
  if (m_AnchoredPosition >= 0 || i_Context.getAnchor() <= 0) {
    return text;
  }
  const int mark = text.indexOf(XPATH_ANCHOR_MARK);
  return text.substring(0, mark - 1).concat(formatInteger(i_Context.getAnchor()));
}

void XPathPredicate::keepAnchored(std::list<Node*>& io_Nodes, long i_Position) const {
  long place = 1;
  for (std::list<Node*>::iterator it = io_Nodes.begin(); it != io_Nodes.end(); ++place) {
    const long position = (*it)->getParent() != nullptr ? place : 1;
    it = position == i_Position ? std::next(it) : io_Nodes.erase(it);
  }
}

TErrorCode XPathPredicate::fiterNodes(std::list<Node*>& io_Nodes,
                                      XPathEvaluationContext& io_Context) const {
  Trace trace(pluginTracer(), "XPathPredicate::fiterNodes");
  HOST_TRACE(trace, 3) << "m_Expression " << condition(io_Context);
  if (!hasCondition()) {
    HOST_TRACE(trace, 1) << "XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION";
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  HOST_TRACE(trace, 3) << "io_Nodes.size() = " << static_cast<unsigned long>(io_Nodes.size());
  const long anchored = getAnchoredPosition(io_Context);
  if (anchored > 0) {
    if (!io_Context.admit(io_Nodes.size())) {
      return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
    }
    keepAnchored(io_Nodes, anchored);
    return 0;
  }

  const TErrorCode result = io_Nodes.empty() ? 0 : keepMatching(io_Nodes, io_Context);
  HOST_TRACE(trace, 3) << "FilteredNodes.size() = " << static_cast<unsigned long>(io_Nodes.size());
  HOST_TRACE(trace, 3) << "result = " << result;
  return result;
}

TErrorCode XPathPredicate::keepMatching(std::list<Node*>& io_Nodes,
                                        XPathEvaluationContext& io_Context) const {
  // Two positions, deliberately different: a number result is compared with the overall
  // position, while the root position handed to the evaluation counts only the candidates
  // of the same name, resuming where that name left off when it comes back.
  std::map<String, long> nextPositionByName;
  String prevNodeName;
  long namePosition = 1;
  long position = 1;
  std::list<Node*> kept;
  TErrorCode result = 0;
  // Compiled once; each candidate's run sees it as freshly parsed.
  const String text = condition(io_Context);
  const XPathExpressionCache::Lease parser = XPathExpressionCache::get()->acquire(text);
  const unsigned long cost = XPATH_PREDICATE_EVALUATION_COST +
                             parser->getExpressionsVector().size() * XPATH_PREDICATE_ITEM_COST;
  // One list for every candidate's value, emptied after each.
  XPathOutputElements values;
  XPathEvaluationObserver* pObserver = io_Context.getObserver();
  if (pObserver != nullptr)
    pObserver->predicateStarted(text, io_Nodes.size());
  // Judging reads each candidate's attributes and children: the candidate a few places ahead
  // is fetched meanwhile.
  std::list<Node*>::const_iterator ahead = io_Nodes.begin();
  for (unsigned int skipped = 0; skipped < NODES_FETCHED_AHEAD && ahead != io_Nodes.end();
       ++skipped) {
    ++ahead;
  }
  for (Node* pCandidate : io_Nodes) {
    if (ahead != io_Nodes.end()) {
      fetchNode(*ahead++);
    }
    if (pCandidate->m_Name != prevNodeName) {
      nextPositionByName[prevNodeName] = namePosition;
      const auto found = nextPositionByName.find(pCandidate->m_Name);
      namePosition = found != nextPositionByName.end() ? found->second : 1;
      prevNodeName = pCandidate->m_Name;
    }
    bool keep = false;
    result = judge(*parser, cost, pCandidate, io_Nodes, namePosition, position, io_Context, values,
                   keep);
    if (pObserver != nullptr)
      pObserver->candidateJudged(*pCandidate, position, *parser, result, keep);
    if (keep) {
      XPathNodeListSpare::append(kept, pCandidate);
    }
    ++namePosition;
    ++position;
  }
  io_Nodes.swap(kept);
  XPathNodeListSpare::recycle(kept);
  if (pObserver != nullptr)
    pObserver->predicateFinished(io_Nodes.size(), result);
  return result;
}

TErrorCode XPathPredicate::judge(XPathExpressionsParser& io_Parser, unsigned long i_Cost,
                                 Node* i_pCandidate, std::list<Node*>& i_Candidates,
                                 long i_RootPosition, long i_Position,
                                 XPathEvaluationContext& io_Context, XPathOutputElements& io_Values,
                                 bool& o_Keep) const {
  Trace trace(pluginTracer(), "XPathPredicate::fiterNodes");
  HOST_TRACE(trace, 3) << "Node to check = " << i_pCandidate->m_Name
                       << " root position = " << i_RootPosition;
  o_Keep = false;
  if (!io_Context.admit(i_Cost)) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  const XPathEvaluationContext::Candidate candidate(io_Context, i_Candidates, i_pCandidate,
                                                    i_Position);
  io_Parser.setSiblings(&i_Candidates);
  io_Parser.setRootPosition(i_RootPosition);
  // The general run makes the comparison's value and the result's only to be read here.
  if (io_Parser.isOperandComparison() && !trace.on(3) && io_Context.getObserver() == nullptr) {
    o_Keep = io_Parser.runComparison(i_pCandidate, io_Context);
    return 0;
  }
  TErrorCode result = io_Parser.runParser(i_pCandidate, io_Context);
  HOST_TRACE(trace, 3) << "result after runParser = " << result;
  if (result != 0) {
    return result;
  }
  OutputElementsGuard guard(io_Values);
  result = io_Parser.getValues(io_Values);
  if (result != 0 || io_Values.empty()) {
    return result;
  }
  HOST_TRACE(trace, 3) << "result OK. values.size() = "
                       << static_cast<unsigned long>(io_Values.size());
  switch (io_Parser.getXPathOutputType()) {
    case BooleanType:
      o_Keep = io_Values.front()->m_Value.compareTo(L"true") == 0;
      break;
    case NumberType:
      o_Keep = io_Values.front()->m_Value == formatInteger(i_Position);
      break;
    case StringType:
    case NodeSetType:
      o_Keep = true;
      break;
  }
  return result;
}

}  // namespace XmlPlugin
