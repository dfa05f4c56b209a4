#pragma once

namespace orbel {

class TreemapItem;

/// Lets assistive technology see the map as a list with one entry for each tile, whose current entry is the
/// current tile. Once for the process; further calls do nothing.
void installTreemapAccessibility();

/// Tells assistive technology which tile has become the current one, if the map has the focus; of the map
/// where there is no such tile.
void announceCurrentTile(TreemapItem* item);

/// To be called when there are other tiles: what was known of the old ones is no longer true.
void forgetTileInterfaces(TreemapItem* item);

} // namespace orbel
