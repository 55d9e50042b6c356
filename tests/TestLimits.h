// Test helpers: inputs at and past the engine's limits, and the smallest stack it is promised.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <string>

inline std::string repeated(const std::string& i_Text, int i_Count) {
  std::string text;
  for (int i = 0; i < i_Count; ++i) {
    text += i_Text;
  }
  return text;
}

// i_Depth openings, i_Middle, then i_Depth closings: "((1))", "<d><d></d></d>".
inline std::string nested(const std::string& i_Open, const std::string& i_Close, int i_Depth,
                          const std::string& i_Middle = "1") {
  return repeated(i_Open, i_Depth) + i_Middle + repeated(i_Close, i_Depth);
}

// Runs i_Work on a thread with a 2 MiB stack, the smallest the engine is promised.
inline void runOnSmallStack(const std::function<void()>& i_Work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 2 * 1024 * 1024), 0);
  pthread_t thread;
  auto body = [](void* i_pWork) -> void* {
    (*static_cast<const std::function<void()>*>(i_pWork))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, body, const_cast<std::function<void()>*>(&i_Work)),
            0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}
