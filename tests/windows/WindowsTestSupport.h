#pragma once

#include "support/AppStateHarness.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QWidget>

#include <gtest/gtest.h>

namespace lumetra::testing {

using WindowsHarness = AppStateHarness;

template <typename T = QWidget>
T* child(const QWidget& root, const QString& name) {
    T* found = root.findChild<T*>(name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return found;
}

// Runs queued tasks (interval hand-overs, coalesced redraws).
inline void settle() {
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

} // namespace lumetra::testing
