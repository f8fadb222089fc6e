// Boost.Asio is compiled here, once; including its implementation everywhere costs two seconds a file.
#include <boost/asio/impl/src.hpp>
