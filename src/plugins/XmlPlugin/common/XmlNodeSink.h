// Receives the tree that the host XML reader builds and traces the reader's messages.
#pragma once

#include <memory>

#include "host/Node.h"
#include "host/NodeReader.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlNodeSink : public NodeSink {
 public:
  // Holds the tree; a tree received before is deleted. Returns 0.
  TErrorCode onNodeTree(Node* i_pTree) override;
  // Each writes one trace record (warning at level 2, the others at level 1) and returns 0;
  // none decides whether the parse failed.
  TErrorCode onWarning(const String& i_Message, int i_Line) override;
  TErrorCode onError(const String& i_Message, int i_Line) override;
  TErrorCode onCriticalError(const String& i_Message, int i_Line) override;

  // Hands the held tree over to the caller; null when there is none (or it was taken).
  // A tree never taken is deleted with the sink.
  Node* getRootNode() { return m_pRoot.release(); }

  // The first error the reader reported and its line (0: the file as a whole); empty when
  // none was reported.
  const String& getFailure() const { return m_Failure; }
  int getFailureLine() const { return m_FailureLine; }

 private:
  void keepFailure(const String& i_Message, int i_Line);

  std::unique_ptr<Node> m_pRoot;
  String m_Failure;
  int m_FailureLine = 0;
};

}  // namespace XmlPlugin
