#pragma once
// Helpers shared by the editor frame tests.
#include "frames/core/Registry.h"
#include <QApplication>
#include <QDateTime>
#include <QTest>
#include <gtest/gtest.h>
#include <ostream>

// Readable dates in failure messages.
inline void PrintTo(const QDate& d, std::ostream* os) {
    *os << d.toString(Qt::ISODate).toStdString();
}

namespace frames::edit_test {

template <typename T> T* make(const QString& cls, QWidget* parent) {
    auto* f = qobject_cast<T*>(Registry::instance().create(cls, parent));
    EXPECT_NE(f, nullptr) << cls.toStdString();
    return f;
}

// Shows a window and makes it active, so that focus moves as it does for a user.
inline void activate(QWidget* w) {
    w->show();
    QApplication::setActiveWindow(w);
    ASSERT_TRUE(QTest::qWaitForWindowActive(w));
}

inline QDateTime at(int y, int m, int d, int h = 0, int min = 0) {
    return QDateTime(QDate(y, m, d), QTime(h, min));
}

} // namespace frames::edit_test
