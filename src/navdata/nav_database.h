// nav_database.h: the bulk navigation tables.
#pragma once

struct NavDatabase {
    int airport_count = 0;              // 0 until loaded: the test whether the database is loaded
};

extern NavDatabase g_navdb;

// Loads apts, navs, ints and their user overlays from \orb\navdata\.
void LoadNavDatabase();
