#include "preview/preview.hpp"
