#pragma once
// The host's reactor service in slot 14: the drawing-bound controls register with it, and it tells
// them of the host's events, reading the selection once for all of them.

namespace ZrHostReactor {

// Puts a new reactor service in slot 14 and starts listening to the host's events. The events of one
// delivery are taken up together when it ends.
void install();
// Stops listening and empties slot 14; registered controls are forgotten.
void uninstall();

} // namespace ZrHostReactor
