#pragma once

namespace tarnwell::pane {

/// The next vertical offset of the about text, in points. Forwards it returns to the top from the
/// bottom; backwards it goes to the bottom from offset 1, so that 0 is passed over.
float nextAboutOffset(float offset, float maximum, bool backwards);

} // namespace tarnwell::pane
