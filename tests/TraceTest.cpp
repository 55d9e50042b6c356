#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestTrace.h"
#include "host/Trace.h"

namespace {

int sideEffects = 0;

int countedOperand() {
  ++sideEffects;
  return 7;
}

TEST(TraceTest, FilteredRecordsEvaluateNothing) {
  TraceCollector collector(1);
  Trace trace(Tracer::getInstance(5), "TraceTest::off");
  sideEffects = 0;
  HOST_TRACE(trace, 2) << "never " << countedOperand();
  HOST_TRACE(trace, 3) << "never " << countedOperand();
  EXPECT_EQ(0, sideEffects);
  EXPECT_TRUE(collector.m_Records.empty());
  Tracer::setLevel(0);
  HOST_TRACE(trace, 1) << "never " << countedOperand();
  EXPECT_EQ(0, sideEffects);
  EXPECT_TRUE(collector.m_Records.empty());
}

TEST(TraceTest, ListenerReceivesRecordsUpToTheThreshold) {
  TraceCollector collector(2);
  const std::vector<TraceRecord>& records = collector.m_Records;
  Trace trace(Tracer::getInstance(5), "TraceTest::on");
  HOST_TRACE(trace, 1) << "error " << String(L"at") << L' ' << 3 << " " << true;
  HOST_TRACE(trace, 2) << "number " << 1.5 << " " << 42L << " " << 7u;
  HOST_TRACE(trace, 3) << "filtered";
  ASSERT_EQ(2u, records.size());
  EXPECT_EQ(1, records[0].level);
  EXPECT_EQ(5, records[0].component);
  EXPECT_STREQ("TraceTest::on", records[0].function);
  EXPECT_EQ(L"error at 3 true", records[0].text);
  EXPECT_EQ(L"number 1.5 42 7", records[1].text);
  EXPECT_EQ(2, Tracer::getInstance(9).getLevel()) << "the threshold holds for every component";
}

TEST(TraceTest, WithoutListenerALineGoesToTheOutput) {
  TraceCollector collector(3);
  Tracer::setListener(Tracer::Listener());
  Trace trace(Tracer::getInstance(5), "TraceTest::line");
  testing::internal::CaptureStderr();
  const int line = __LINE__ + 1;
  HOST_TRACE(trace, 3) << "text \xC3\xA9 " << L"\x20AC";
  const std::string written = testing::internal::GetCapturedStderr();
  EXPECT_EQ("3 5 TraceTest::line " + std::string(__FILE__) + ":" + std::to_string(line) +
                " text \xC3\xA9 \xE2\x82\xAC\n",
            written);
}

}  // namespace
