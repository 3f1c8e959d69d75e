#pragma once

#include <QAbstractButton>
#include <QObject>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iterator>

namespace lumetra {

// Binds a picker (a combo box or a segmented picker: `setCurrentIndex` and an
// `activated(int)` that fires on every user choice) to one enumeration setting. Index i is
// `cases[i]`. A choice writes the setting, also when it is the current value, so the store
// writes the key again; a change of the setting from anywhere moves the picker.
template <typename Picker, typename E, std::size_t N, typename Notifier, typename Signal>
void bindPicker(Picker* picker, const std::array<E, N>& cases, std::function<E()> get,
                std::function<void(E)> set, Notifier* notifier, Signal changed) {
    auto show = [picker, cases, get] {
        const auto found = std::find(cases.begin(), cases.end(), get());
        if (found != cases.end())
            picker->setCurrentIndex(int(std::distance(cases.begin(), found)));
    };
    show();
    QObject::connect(picker, &Picker::activated, picker, [cases, set](int index) {
        if (index >= 0 && std::size_t(index) < cases.size())
            set(cases[std::size_t(index)]);
    });
    QObject::connect(notifier, changed, picker, show);
}

// Binds a toggle (switch or check box) to one Boolean setting: a click writes it, a change
// from anywhere moves the toggle.
template <typename Notifier, typename Signal>
void bindToggle(QAbstractButton* toggle, std::function<bool()> get, std::function<void(bool)> set,
                Notifier* notifier, Signal changed) {
    toggle->setCheckable(true);
    toggle->setChecked(get());
    QObject::connect(toggle, &QAbstractButton::clicked, toggle, [set](bool on) { set(on); });
    QObject::connect(notifier, changed, toggle, [toggle, get] { toggle->setChecked(get()); });
}

} // namespace lumetra
