#include "backends/curl/CurlTransfer.h"

#include "backends/curl/TransferErrors.h"

namespace supportsdk {
namespace {

constexpr int kMaximumRedirects = 10;
constexpr std::size_t kMaximumHeaderBytes = std::size_t{256} * 1024;

/// Time limits are the caller's and may be as large as the type allows.
std::chrono::milliseconds bounded(std::chrono::milliseconds limit) {
    return std::clamp(limit, std::chrono::milliseconds{1},
                      std::chrono::milliseconds{std::chrono::hours{24}});
}

bool isIdempotent(const std::string& method) {
    return method == "GET" || method == "HEAD" || method == "PUT" || method == "DELETE" ||
           method == "OPTIONS";
}

template <typename Callback>
void setCallback(CURL* easy, CURLoption function, Callback callback, CURLoption data, void* self) {
    curl_easy_setopt(easy, function, callback);
    curl_easy_setopt(easy, data, self);
}

}  // namespace

CurlTransfer::CurlTransfer(HttpRequest request, HttpHop first, Done done)
    : request_(std::move(request)),
      hop_(std::move(first)),
      done_(std::move(done)),
      moved_(Clock::now()),
      end_(moved_ + bounded(request_.totalTimeout)) {}

bool CurlTransfer::prepare(EasyPtr easy, TrustStore& trust) {
    easy_ = std::move(easy);
    headerList_ = makeHeaderList(hop_);
    if (!easy_ || !headerList_) return false;
    body_.clear();
    headerBytes_ = 0;
    hasWholeHead_ = false;
    sentBytes_ = 0;
    sends_ = 0;
    moved_ = Clock::now();
    configureEasy(easy_.get(), hop_, headerList_.get(), request_.body,
                  bounded(request_.idleTimeout), trust);
    CURL* handle = easy_.get();
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, detail_.data());
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    setCallback(handle, CURLOPT_HEADERFUNCTION, onHeader, CURLOPT_HEADERDATA, this);
    setCallback(handle, CURLOPT_WRITEFUNCTION, onBody, CURLOPT_WRITEDATA, this);
    setCallback(handle, CURLOPT_XFERINFOFUNCTION, onProgress, CURLOPT_XFERINFODATA, this);
    setCallback(handle, CURLOPT_PREREQFUNCTION, onSend, CURLOPT_PREREQDATA, this);
    return true;
}

bool CurlTransfer::followsRedirect(CURLcode code) {
    const bool isWhole = code == CURLE_OK && hasWholeHead_;
    const std::string target = isWhole && isRedirect(status()) ? location() : "";
    if (target.empty()) return false;
    if (redirects_ == kMaximumRedirects) {
        error_ = "The server redirected too many times.";
        return false;
    }
    auto next = followRedirect(hop_, status(), target, request_.confinedHeaderPrefix);
    if (auto* error = std::get_if<std::string>(&next)) {
        error_ = std::move(*error);
        return false;
    }
    hop_ = std::move(std::get<HttpHop>(next));
    ++redirects_;
    return true;
}

void CurlTransfer::finish(CURLcode code) {
    HttpResponse response;
    if (easy_) {
        response.status = status();
        response.headers = responseHeaders();
    }
    // libcurl takes a head that ends with the connection for a whole one.
    if (code == CURLE_OK && (!hasWholeHead_ || response.status == 0)) code = CURLE_GOT_NOTHING;
    if (error_.empty() && code != CURLE_OK) error_ = describeTransferError(code);
    response.error = error_;
    if (error_.empty()) response.body = std::move(body_);
    done_(std::move(response));
}

CurlTransfer::Clock::time_point CurlTransfer::deadline() const {
    return std::min(end_, moved_ + bounded(request_.idleTimeout));
}

std::string CurlTransfer::failure() const {
    if (error_.empty()) return {};
    std::string line = "HTTP " + hop_.method + " " + hop_.address.name() + ": " + error_;
    if (detail_[0]) line += " (" + std::string(detail_.data()) + ")";
    return line;
}

std::size_t CurlTransfer::onHeader(char* data, std::size_t, std::size_t size, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.moved_ = Clock::now();
    transfer.headerBytes_ += size;
    const std::string_view line(data, size);
    if (line.starts_with("HTTP/")) transfer.hasWholeHead_ = false;
    if (line == "\r\n" || line == "\n") transfer.hasWholeHead_ = true;
    if (transfer.headerBytes_ <= kMaximumHeaderBytes) return size;
    transfer.error_ = "The server's answer has too many headers.";
    return 0;
}

std::size_t CurlTransfer::onBody(char* data, std::size_t, std::size_t size, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.moved_ = Clock::now();
    const auto room = transfer.request_.maximumResponseBytes - transfer.body_.size();
    if (size > room) {
        transfer.error_ = "The server's answer is too large.";
        return 0;
    }
    try {
        const auto* first = reinterpret_cast<const std::byte*>(data);
        transfer.body_.insert(transfer.body_.end(), first, first + size);
    } catch (const std::bad_alloc&) {  // must not unwind through libcurl
        return 0;
    }
    return size;
}

int CurlTransfer::onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    if (sent != transfer.sentBytes_) {
        transfer.sentBytes_ = sent;
        transfer.moved_ = Clock::now();
    }
    return 0;
}

/// libcurl sends a request again when a kept connection breaks before the first byte of an answer.
/// The server may have acted on it by then, so that only idempotent ones may go out twice
/// (RFC 9110, section 9.2.2).
int CurlTransfer::onSend(void* self, char*, char*, int, int) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    const bool isFirst = transfer.sends_++ == 0;
    return isFirst || isIdempotent(transfer.hop_.method) ? CURL_PREREQFUNC_OK
                                                         : CURL_PREREQFUNC_ABORT;
}

int CurlTransfer::status() const {
    long status = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    return status < 200 ? 0 : static_cast<int>(status);  // interim ones announce a response
}

std::string CurlTransfer::location() const {
    curl_header* header = nullptr;
    const auto found = curl_easy_header(easy_.get(), "Location", 0, CURLH_HEADER, -1, &header);
    return found == CURLHE_OK ? header->value : "";
}

HttpHeaders CurlTransfer::responseHeaders() const {
    HttpHeaders headers;
    curl_header* each = nullptr;
    while ((each = curl_easy_nextheader(easy_.get(), CURLH_HEADER, -1, each))) {
        headers.emplace_back(each->name, each->value);
    }
    return headers;
}

}  // namespace supportsdk
