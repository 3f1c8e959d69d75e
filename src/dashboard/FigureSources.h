#pragma once

#include <QString>
#include <QStringList>

namespace lumetra {

// Where a figure comes from, for the cards' tooltips. Widget-free.

// The sensors averaged into the temperature, grouped by chip, one chip a line:
// "k10temp/Tccd1", "k10temp/Tccd2" give "k10temp · Tccd1, Tccd2". Empty without sources.
QString temperatureSourcesText(const QStringList& sources);

// The interfaces whose traffic the rates count: "Counted: enp5s0, wlp3s0". Empty without.
QString networkInterfacesText(const QStringList& interfaces);

} // namespace lumetra
