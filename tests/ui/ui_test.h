// What every test program of the dialog begins with: a desktop of its own that is gone afterwards, so that neither the
// user's settings nor another test's are touched, and a platform without a screen.
#pragma once

#include <QApplication>
#include <QTest>
#include <functional>
#include <memory>
#include <string>

#include "ui/test_desktop.h"

namespace carvello::test {

// The path of a file in the folder for temporary ones.
std::string TempFile(const QString& name);

// The tool tip on the screen, and its text without markup and places to break it; null and empty when there is none.
QWidget* ToolTipShown();
QString ToolTipText();

using AppMaker = std::function<std::unique_ptr<QApplication>(int& argc, char** argv)>;

// `makeApp`: the toolkit's application object unless given.
int RunUiTest(int argc, char** argv, const std::function<std::unique_ptr<QObject>()>& makeTest,
              const AppMaker& makeApp = {});

}  // namespace carvello::test

// The main() of a test program with one test class.
#define CARVELLO_UI_TEST(TestClass)                                                             \
  int main(int argc, char** argv) {                                                             \
    return carvello::test::RunUiTest(argc, argv, [] { return std::make_unique<TestClass>(); }); \
  }
