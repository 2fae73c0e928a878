#include "backends/curl/TransferErrors.h"

namespace supportsdk {

std::string describeTransferError(CURLcode code) {
    switch (code) {
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
            return "The server could not be found.";
        case CURLE_COULDNT_CONNECT:
            return "Could not connect to the server.";
        case CURLE_OPERATION_TIMEDOUT:
            return "The request timed out.";
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CIPHER:
            return "A secure connection to the server could not be made.";
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_ISSUER_ERROR:
            return "The server's certificate is not trusted.";
        case CURLE_GOT_NOTHING:
        case CURLE_SEND_ERROR:
        case CURLE_RECV_ERROR:
        case CURLE_PARTIAL_FILE:
        case CURLE_ABORTED_BY_CALLBACK:
        case CURLE_HTTP2_STREAM:
            return "The connection to the server was lost.";
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_BAD_CONTENT_ENCODING:
        case CURLE_HTTP2:
            return "The server's answer could not be understood.";
        default:
            return std::string("The request failed: ") + curl_easy_strerror(code) + ".";
    }
}

}  // namespace supportsdk
