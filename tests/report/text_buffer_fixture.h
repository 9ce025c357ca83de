// Test fixture owning one TextBuffer: initialised before each test and freed after it, so a test
// that stops early at a failed assertion leaks nothing.
#pragma once

#include "report/page/text_buffer.h"

#include <gtest/gtest.h>

#include <string>

class TextBufferTest : public testing::Test {
  protected:
    void SetUp() override { text_buffer_init(buffer); }
    void TearDown() override { text_buffer_free(buffer); }

    std::string content() const {
        return buffer.data == nullptr ? std::string() : std::string(buffer.data, buffer.length);
    }

    TextBuffer buffer;
};
