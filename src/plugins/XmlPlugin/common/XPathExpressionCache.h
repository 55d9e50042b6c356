// The compiled XPath texts of the process, kept by text, so that the same text run over
// many files (or a predicate over many candidates) is tokenized and converted once.
//
// A compiled expression is lent to one evaluation at a time: while it is lent, asking for
// the same text (an evaluation nested in another one) gets a compiled expression of its own
// that is not kept. The cache holds at most XPATH_CACHED_EXPRESSIONS texts of at most
// XPATH_CACHED_TEXT_LENGTH characters; the least recently used one that is not lent makes
// room for a new one. Like the document cache it lives until cleanup().
#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "XPathExpressionsParser.h"
#include "host/String.h"

namespace XmlPlugin {

// Enough for the rules of a scan and the predicates within them; a longer or rarer text is
// compiled for the one evaluation that uses it.
const size_t XPATH_CACHED_EXPRESSIONS = 64;
const int XPATH_CACHED_TEXT_LENGTH = 4096;

class XPathExpressionCache {
 private:
  struct Entry {
    std::unique_ptr<XPathExpressionsParser> m_pParser;
    uint64_t m_LastUse = 0;
    bool m_Lent = false;
  };

 public:
  // A compiled expression for one evaluation: runs through it see a fresh parse each time.
  // Giving it back frees what its last run computed.
  class Lease {
   public:
    Lease(Lease&& i_Other) noexcept;
    ~Lease();
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    Lease& operator=(Lease&&) = delete;

    XPathExpressionsParser& operator*() const { return *m_pParser; }
    XPathExpressionsParser* operator->() const { return m_pParser; }

   private:
    friend class XPathExpressionCache;
    Lease(XPathExpressionsParser* i_pParser, Entry* i_pEntry,
          std::unique_ptr<XPathExpressionsParser> i_pOwned);

    XPathExpressionsParser* m_pParser;
    Entry* m_pEntry;  // the cache entry lent, or null for an expression of its own
    std::unique_ptr<XPathExpressionsParser> m_pOwned;
  };

  // The one instance, created empty on first use.
  static XPathExpressionCache* get();
  // Deletes the instance and every compiled expression; no lease may be outstanding.
  static void cleanup();

  // The compiled form of i_XPath, compiled now when it is not kept (a text that does not
  // compile is kept too, and its runs fail with the same code).
  Lease acquire(const String& i_XPath);

 private:
  XPathExpressionCache() = default;
  // True when a new entry fits, after dropping the least recently used one not lent.
  bool makeRoom();

  std::map<String, Entry> m_Entries;
  uint64_t m_Clock = 0;
  static XPathExpressionCache* m_pCache;
};

}  // namespace XmlPlugin
