// SPDX-License-Identifier: MIT
#pragma once

namespace corvanta {

/// Lets assistive technology see maps as pictures with a place, which can be pointed at in their middle. To be called
/// before the first map is shown; further calls do nothing.
void makeMapsAccessible();

} // namespace corvanta
