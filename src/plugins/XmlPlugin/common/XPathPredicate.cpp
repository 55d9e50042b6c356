#include "XPathPredicate.h"

#include <map>

#include "PluginTracer.h"
#include "XPath.h"
#include "XPathExpressionCache.h"
#include "XPathNumberText.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

XPathPredicate::XPathPredicate(const String& i_Expression)
    : XPathPredicate(std::make_shared<const String>(i_Expression), 0, i_Expression.length() - 1) {}

XPathPredicate::XPathPredicate(const std::shared_ptr<const String>& i_pText, int i_Open,
                               int i_Close)
    : m_pText(i_pText), m_Open(i_Open), m_Close(i_Close), m_AnchoredPosition(anchoredPosition()) {}

long XPathPredicate::anchoredPosition() const {
  const String prefix(L"position()=");
  const int begin = m_Open + 1;
  // Nine digits at most, so that the number stays exact.
  const int digits = m_Close - begin - prefix.length();
  if (digits < 1 || digits > 9 || !m_pText->startsWith(prefix, begin)) {
    return 0;
  }
  long position = 0;
  for (int i = begin + prefix.length(); i < m_Close; ++i) {
    const wchar_t digit = m_pText->charAt(i);
    if (digit < L'0' || digit > L'9') {
      return 0;
    }
    position = position * 10 + (digit - L'0');
  }
  return position;
}

void XPathPredicate::keepAnchored(std::list<Node*>& io_Nodes) const {
  long place = 1;
  for (std::list<Node*>::iterator it = io_Nodes.begin(); it != io_Nodes.end(); ++place) {
    const long position = (*it)->getParent() != nullptr ? place : 1;
    it = position == m_AnchoredPosition ? std::next(it) : io_Nodes.erase(it);
  }
}

TErrorCode XPathPredicate::fiterNodes(std::list<Node*>& io_Nodes) const {
  Trace trace(pluginTracer(), "XPathPredicate::fiterNodes");
  HOST_TRACE(trace, 3) << "m_Expression " << condition();
  if (!hasCondition()) {
    HOST_TRACE(trace, 1) << "XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION";
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  HOST_TRACE(trace, 3) << "io_Nodes.size() = " << static_cast<unsigned long>(io_Nodes.size());
  if (m_AnchoredPosition > 0) {
    if (!io_Nodes.empty() && !admitEvaluationWork(1)) {
      return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
    }
    keepAnchored(io_Nodes);
    return 0;
  }

  const TErrorCode result = io_Nodes.empty() ? 0 : keepMatching(io_Nodes);
  HOST_TRACE(trace, 3) << "FilteredNodes.size() = " << static_cast<unsigned long>(io_Nodes.size());
  HOST_TRACE(trace, 3) << "result = " << result;
  return result;
}

TErrorCode XPathPredicate::keepMatching(std::list<Node*>& io_Nodes) const {
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
  const String text = condition();
  const XPathExpressionCache::Lease parser = XPathExpressionCache::get()->acquire(text);
  const unsigned long cost =
      XPATH_PREDICATE_EVALUATION_COST + text.length() / XPATH_PREDICATE_CHARACTERS_PER_COST;
  for (Node* pCandidate : io_Nodes) {
    if (pCandidate->m_Name != prevNodeName) {
      nextPositionByName[prevNodeName] = namePosition;
      const auto found = nextPositionByName.find(pCandidate->m_Name);
      namePosition = found != nextPositionByName.end() ? found->second : 1;
      prevNodeName = pCandidate->m_Name;
    }
    bool keep = false;
    result = judge(*parser, cost, pCandidate, io_Nodes, namePosition, position, keep);
    if (keep) {
      kept.push_back(pCandidate);
    }
    ++namePosition;
    ++position;
  }
  io_Nodes.swap(kept);
  return result;
}

TErrorCode XPathPredicate::judge(XPathExpressionsParser& io_Parser, unsigned long i_Cost,
                                 Node* i_pCandidate, std::list<Node*>& i_Candidates,
                                 long i_RootPosition, long i_Position, bool& o_Keep) const {
  Trace trace(pluginTracer(), "XPathPredicate::fiterNodes");
  HOST_TRACE(trace, 3) << "Node to check = " << i_pCandidate->m_Name
                       << " root position = " << i_RootPosition;
  o_Keep = false;
  if (!admitEvaluationWork(i_Cost)) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  io_Parser.setSiblings(&i_Candidates);
  io_Parser.setRootPosition(i_RootPosition);
  TErrorCode result = io_Parser.runParser(i_pCandidate);
  HOST_TRACE(trace, 3) << "result after runParser = " << result;
  if (result != 0) {
    return result;
  }
  XPathOutputElements values;
  OutputElementsGuard guard(values);
  result = io_Parser.getValues(values);
  if (result != 0 || values.empty()) {
    return result;
  }
  HOST_TRACE(trace, 3) << "result OK. values.size() = "
                       << static_cast<unsigned long>(values.size());
  switch (io_Parser.getXPathOutputType()) {
    case BooleanType:
      o_Keep = values.front()->m_Value.compareTo(L"true") == 0;
      break;
    case NumberType:
      o_Keep = values.front()->m_Value == formatInteger(i_Position);
      break;
    case StringType:
    case NodeSetType:
      o_Keep = true;
      break;
  }
  return result;
}

}  // namespace XmlPlugin
