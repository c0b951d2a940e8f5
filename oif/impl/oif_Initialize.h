// oif_initialize, oif_finalize: the start-up and shut-down hooks of the input-deck generator,
// called by odb_initialize and odb_finalize between the store's modules and the schema
// conversion; internal.
#ifndef OIF_INITIALIZE_H
#define OIF_INITIALIZE_H

// Each raises or lowers `count`, the number of start-ups not yet ended; the generator keeps no
// other state between decks.
void oif_initialize(int& count);
void oif_finalize(int& count);

#endif
