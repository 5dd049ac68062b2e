#pragma once

namespace zorvel {

// The two drawing areas of a check window on which numbered lines are printed centred: line n
// stands at height (n - 1) times the height of one text line.
enum class CheckArea { Messages, Status };

}  // namespace zorvel
