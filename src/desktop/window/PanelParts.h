// The regions of the main panel, each a widget that binds its controls.
#pragma once

#include <QWidget>

#include "desktop/views/Binder.h"

namespace quorl {

constexpr int kTopHeight = 128, kStripHeight = 40;

// Frequency, dial, step, oscillator side, BFO, clock and S-meter.
QWidget* MakeTuningCard(Binder& bind);
// Power, load, levels and display size.
QWidget* MakeReceiverCard(Binder& bind);
// Mode, volume and mute, which every display size shows.
QWidget* MakeListeningStrip(Binder& bind);
// Filters, notch, AGC and blanker, one under the other.
QWidget* MakeControlColumn(Binder& bind);
// What is set once: configuration, analyser, statistics.
QWidget* MakeSetupStrip(Binder& bind);
// The place of the scope.
QWidget* MakeScopeCard(Binder& bind);
// Band plan, sub-bands, presets.
QWidget* MakeMemoriesCard(Binder& bind);
// The recorder's buttons, and the tracks that take the memories' place.
QWidget* MakeRecorderCard(Binder& bind);
QWidget* MakeTracksCard(Binder& bind);

}  // namespace quorl
