#pragma once

#include <gtest/gtest.h>

#include <QApplication>

#include <memory>

namespace halvane::test {

/// Tests that have the toolkit running, without a screen.
class ToolkitTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static int lArguments = 1;
        static char sProgram[] = "widgets_test";
        static char* aArguments[] = {sProgram, nullptr};
        pToolkit = std::make_unique<QApplication>(lArguments, aArguments);
    }
    static void TearDownTestSuite() { pToolkit.reset(); }

private:
    static inline std::unique_ptr<QApplication> pToolkit;
};

} // namespace halvane::test
