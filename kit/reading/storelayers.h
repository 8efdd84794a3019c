#include <kit/reading/storetags.h>
