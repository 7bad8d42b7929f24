// nav_database.cpp: the tables' loading is still to come.
#include "navdata/nav_database.h"

NavDatabase g_navdb;

void LoadNavDatabase() {}
