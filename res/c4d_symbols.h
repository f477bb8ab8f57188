// The texts of the string files, by number.
#ifndef C4D_SYMBOLS_H__
#define C4D_SYMBOLS_H__

enum {
    IDS_MENU = 0,
    IDS_VERSION = 1,
    IDS_VERSION_HELP = 2,
    IDS_HELP = 5,
    IDS_HELP_HELP = 6,
    IDS_PLANT = 8,
    IDS_STATISTICS_MESH = 9,      // points, polygons
    IDS_STATISTICS_SKELETON = 10, // points, branches, connectors
    IDS_MISSING_MODEL = 14,       // path
    IDS_NOT_A_MODEL = 15,         // path
    IDS_LOADER = 16,
    IDS_BROWSER = 17,
    IDS_BROWSER_HELP = 18,
    IDS_REPLACE_TEXTURE_TAGS = 48, // names of objects, each on a line of its own
    IDS_REUSE_MATERIALS = 49       // names of materials, the same way
};

#endif
