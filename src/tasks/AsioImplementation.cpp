// Asio's own code, compiled once here instead of in every file that includes its headers
// (ASIO_SEPARATE_COMPILATION).
#include <asio/impl/src.hpp>
