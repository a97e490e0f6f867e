// What every test program of the dialog begins with: a home of its own that is gone afterwards, so that neither the
// user's settings nor another test's are touched, a platform without a screen, and an opener of files that only notes
// what it is asked to open.
#pragma once

#include <QStringList>
#include <QTest>
#include <functional>
#include <memory>

namespace carvello::test {

// What the desktop was asked to open so far, in this order.
QStringList OpenedPaths();

int RunUiTest(int argc, char** argv, const std::function<std::unique_ptr<QObject>()>& makeTest);

}  // namespace carvello::test

// The main() of a test program with one test class.
#define CARVELLO_UI_TEST(TestClass)                                                             \
  int main(int argc, char** argv) {                                                             \
    return carvello::test::RunUiTest(argc, argv, [] { return std::make_unique<TestClass>(); }); \
  }
