#pragma once

namespace lumetra {

// What the top applications are ranked by: CPU (percent of one core) or resident memory.
enum class TopApplicationOrder { cpu, memory };

} // namespace lumetra
