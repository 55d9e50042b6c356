#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/Trace.h"

namespace {

class TraceTest : public testing::Test {
 protected:
  void SetUp() override {
    Tracer::setListener([this](const TraceRecord& i_Record) { m_Records.push_back(i_Record); });
  }
  void TearDown() override {
    Tracer::setListener(Tracer::Listener());
    Tracer::setLevel(0);
  }
  std::vector<TraceRecord> m_Records;
};

int sideEffects = 0;

int countedOperand() {
  ++sideEffects;
  return 7;
}

TEST_F(TraceTest, FilteredRecordsEvaluateNothing) {
  Tracer::setLevel(1);
  Trace trace(Tracer::getInstance(5), "TraceTest::off");
  sideEffects = 0;
  HOST_TRACE(trace, 2) << "never " << countedOperand();
  HOST_TRACE(trace, 3) << "never " << countedOperand();
  EXPECT_EQ(0, sideEffects);
  EXPECT_TRUE(m_Records.empty());
  Tracer::setLevel(0);
  HOST_TRACE(trace, 1) << "never " << countedOperand();
  EXPECT_EQ(0, sideEffects);
  EXPECT_TRUE(m_Records.empty());
}

TEST_F(TraceTest, ListenerReceivesRecordsUpToTheThreshold) {
  Tracer::setLevel(2);
  Trace trace(Tracer::getInstance(5), "TraceTest::on");
  HOST_TRACE(trace, 1) << "error " << String(L"at") << L' ' << 3 << " " << true;
  HOST_TRACE(trace, 2) << "number " << 1.5 << " " << 42L << " " << 7u;
  HOST_TRACE(trace, 3) << "filtered";
  ASSERT_EQ(2u, m_Records.size());
  EXPECT_EQ(1, m_Records[0].level);
  EXPECT_EQ(5, m_Records[0].component);
  EXPECT_STREQ("TraceTest::on", m_Records[0].function);
  EXPECT_EQ(L"error at 3 true", m_Records[0].text);
  EXPECT_EQ(L"number 1.5 42 7", m_Records[1].text);
  EXPECT_EQ(2, Tracer::getInstance(9).getLevel()) << "the threshold holds for every component";
}

TEST_F(TraceTest, WithoutListenerALineGoesToTheOutput) {
  Tracer::setListener(Tracer::Listener());
  Tracer::setLevel(3);
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
