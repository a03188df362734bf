#pragma once

#include <string>

namespace VX::NextGenView {

// COLLADA inputs that Assimp 5.2's reader cannot survive: it dereferences a
// null pointer when a data array (<float_array>, <int_array>...) declares a
// count that reads as zero ("0", "", "-3", "x"); it allocates without end
// when an index list (<p>) holds a character that is neither a digit, a sign
// nor a blank; and it aborts on a primitive element (<triangles>,
// <polylist>...) whose count is above zero but which has no <p>. The loader
// asks this check first.
// Returns an empty string for text that is no COLLADA document or has no
// such array, else why the file is refused.
std::string colladaHazard(const std::string& text);

}  // namespace VX::NextGenView
