#include "support/test.hh"
