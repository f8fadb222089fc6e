// Boost.JSON is compiled here, once, for every target that reads or writes JSON.
#include <boost/json/src.hpp>
