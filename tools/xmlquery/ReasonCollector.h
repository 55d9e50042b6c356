// The plug-in's reasons for a failure (its level-1 records under XML_PLUGIN_REASON_FUNCTION),
// collected while xmlquery runs queries and printed for the person who wrote the rule.
#pragma once

#include <ostream>
#include <string>

namespace XmlQuery {

class ReasonCollector {
 public:
  // Raises the trace threshold to at least 1 and listens; the records of the level the user
  // asked for still go to the trace file.
  ReasonCollector();
  // Restores the threshold and the trace file.
  ~ReasonCollector();
  ReasonCollector(const ReasonCollector&) = delete;
  ReasonCollector& operator=(const ReasonCollector&) = delete;

  // The first reason recorded since the last call (UTF-8), empty when there was none. Later
  // ones follow from it (a failed function leaves its operator short of an argument).
  std::string take();

 private:
  int m_UserLevel;
  std::string m_Reason;
};

// Writes a reason on a line after i_Prefix (nothing for an empty one); a reason about a column
// of the XPath text is followed by the text around that column and a caret under it.
void printReason(const std::string& i_Reason, const std::string& i_XPath,
                 const std::string& i_Prefix, std::ostream& o_Output);

}  // namespace XmlQuery
