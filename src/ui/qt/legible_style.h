// SPDX-License-Identifier: GPL-3.0-or-later
// The toolkit's style, where its boxes can be seen.
#pragma once

namespace quarlin {

// The toolkit's own style outlines check boxes and option buttons in a shade of the background, which on a
// dark one cannot be told from it: from now on they get one between background and text there. Light windows
// and other styles stay as they are. Wants the application.
void MakeStyleLegible();

}  // namespace quarlin
