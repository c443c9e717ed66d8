// How a program is loaded. Set by korvel-run's flags and the fuzz inputs,
// and carried down the loading path to the normalised network.
#pragma once

struct LoadOptions {
  /// Reduce the network to its minimal form; false keeps one class per node.
  bool minimise = true;
  /// Fold true and false out of Boolean operators while normalising.
  bool bool_opt = false;
  /// Keep every evaluation item once the step schedule is derived, so that
  /// a step may run by the items.
  bool keep_items = false;
  /// Keep the normal form until the caller releases it, for its dumps;
  /// false frees it as soon as the partition has read it.
  bool keep_normal_form = true;
};
