#pragma once
#include <string>

// Where an offered installer comes from and where it lands. Everything here distrusts the URL: it
// comes from the network.
namespace Resko {

struct DownloadLocation {
    std::string host;
    int port = 80;
    std::string path;  // without its leading "/"
};

// "host[:port]/path" (a leading "http://" is dropped). False for another scheme, an empty host, a
// bad port, or control characters that could end the request line.
bool splitDownloadUrl(const std::string& url, DownloadLocation& location);

// The URL's last path segment, percent-decoded, reduced to a plain name: no folders, no "..", no
// leading dot or blank, no control characters, at most 200 bytes. Never empty.
std::string plainFileName(const std::string& url);

// Creates `name` in `folder` without touching an existing file: "a.exe" taken gives "a (1).exe",
// and so on. Returns an open descriptor and sets `path`, or -1.
int createUniqueFile(const std::string& folder, const std::string& name, std::string& path);

}  // namespace Resko
