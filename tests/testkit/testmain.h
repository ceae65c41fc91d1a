#pragma once

#include "tests/testkit/temporaryhome.h"

#include <QApplication>
#include <QtTest>

/** main() of a test program: a home folder of its own, then the application, then the tests of the class. */
#define VELKOR_TEST_MAIN(TestClass)                                                                          \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        const TemporaryHome home;                                                                            \
        const QApplication app(argc, argv);                                                                  \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
