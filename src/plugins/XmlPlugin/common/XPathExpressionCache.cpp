#include "XPathExpressionCache.h"

namespace XmlPlugin {

XPathExpressionCache* XPathExpressionCache::m_pCache = nullptr;

XPathExpressionCache::Lease::Lease(XPathExpressionsParser* i_pParser, Entry* i_pEntry,
                                   std::unique_ptr<XPathExpressionsParser> i_pOwned)
    : m_pParser(i_pParser), m_pEntry(i_pEntry), m_pOwned(std::move(i_pOwned)) {}

XPathExpressionCache::Lease::Lease(Lease&& i_Other) noexcept
    : m_pParser(i_Other.m_pParser),
      m_pEntry(i_Other.m_pEntry),
      m_pOwned(std::move(i_Other.m_pOwned)) {
  i_Other.m_pEntry = nullptr;
}

XPathExpressionCache::Lease::~Lease() {
  if (m_pEntry != nullptr) {
    m_pParser->reset();
    m_pEntry->m_Lent = false;
  }
}

XPathExpressionCache* XPathExpressionCache::get() {
  if (m_pCache == nullptr) {
    m_pCache = new XPathExpressionCache();
  }
  return m_pCache;
}

void XPathExpressionCache::cleanup() {
  delete m_pCache;
  m_pCache = nullptr;
}

XPathExpressionCache::Lease XPathExpressionCache::acquire(const String& i_XPath) {
  const auto found = m_Entries.find(i_XPath);
  Entry* pEntry = found != m_Entries.end() ? &found->second : nullptr;
  if (pEntry == nullptr && i_XPath.length() <= XPATH_CACHED_TEXT_LENGTH && makeRoom()) {
    auto pParser = std::make_unique<XPathExpressionsParser>(i_XPath);
    pEntry = &m_Entries[i_XPath];
    pEntry->m_pParser = std::move(pParser);
  }
  if (pEntry == nullptr || pEntry->m_Lent) {
    auto pOwned = std::make_unique<XPathExpressionsParser>(i_XPath);
    XPathExpressionsParser* pParser = pOwned.get();
    return Lease(pParser, nullptr, std::move(pOwned));
  }
  pEntry->m_Lent = true;
  pEntry->m_LastUse = ++m_Clock;
  return Lease(pEntry->m_pParser.get(), pEntry, nullptr);
}

bool XPathExpressionCache::makeRoom() {
  if (m_Entries.size() < XPATH_CACHED_EXPRESSIONS) {
    return true;
  }
  auto oldest = m_Entries.end();
  for (auto it = m_Entries.begin(); it != m_Entries.end(); ++it) {
    if (!it->second.m_Lent &&
        (oldest == m_Entries.end() || it->second.m_LastUse < oldest->second.m_LastUse)) {
      oldest = it;
    }
  }
  if (oldest == m_Entries.end()) {
    return false;
  }
  m_Entries.erase(oldest);
  return true;
}

}  // namespace XmlPlugin
