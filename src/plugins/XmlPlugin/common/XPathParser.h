// Cuts a prepared location path into its steps.
//
// Steps are separated by single "/"; a "//" never separates two steps here (it stays inside
// the token), and slashes inside square brackets belong to the predicate. Only a leading
// "//" is meaningful: it marks the first step as searched in depth.
#pragma once

#include <memory>
#include <vector>

#include "XPathStep.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathParser {
 public:
  // The number of step separators, which is the index of the last step. A "//" counts
  // once; slashes inside brackets count like any other, so for a path with a slash in a
  // predicate the count is above the index of the last token.
  unsigned int getStepCount(const String& i_Path) const;

  // The next step text from the cursor, "" when there is none. Unless peeking, the cursor
  // moves past the separator after the token.
  String getToken(const String& i_Path, bool i_Peek);

  // The step texts of the path in order, as getToken gives them from the start.
  std::vector<String> getTokens(const String& i_Path);

  // Builds step i_Index (0-based) of the path: root for index 0, leaf when no step follows,
  // mid otherwise. -103 when the path has fewer steps; otherwise XPathStep::get's code.
  TErrorCode getStep(const String& i_Path, unsigned int i_Index,
                     std::unique_ptr<XPathStep>& o_Step);
  // The same from the path's step texts.
  static TErrorCode getStep(const std::vector<String>& i_Tokens, unsigned int i_Index,
                            std::unique_ptr<XPathStep>& o_Step);

 private:
  unsigned int m_Position = 0;  // scan cursor into the path text
};

}  // namespace XmlPlugin
