#include "platform/url_errors.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

struct Row {
    int code;
    const char *sentence;
};

void PrintTo(const Row &row, std::ostream *out)
{
    *out << row.code;
}

class UrlErrors : public testing::TestWithParam<Row> { };

TEST_P(UrlErrors, haveTheirSentence)
{
    const Error error = urlError(static_cast<UrlFailure>(GetParam().code), u"models.example.org"_qs);
    EXPECT_EQ(error.domain(), u"NSURLErrorDomain"_qs);
    EXPECT_EQ(error.code(), GetParam().code);
    EXPECT_EQ(error.localizedDescription(), QString::fromUtf8(GetParam().sentence));
}

INSTANTIATE_TEST_SUITE_P(
    Codes, UrlErrors,
    testing::Values(Row{-1, "unknown error"}, Row{-999, "cancelled"}, Row{-1000, "bad URL"},
                    Row{-1001, "The request timed out."}, Row{-1002, "unsupported URL"},
                    Row{-1003, "A server with the specified hostname could not be found."},
                    Row{-1004, "Could not connect to the server."}, Row{-1005, "The network connection was lost."},
                    Row{-1007, "too many HTTP redirects"}, Row{-1009, "The Internet connection appears to be offline."},
                    Row{-1011, "There was a bad response from the server."},
                    Row{-1022, "The resource could not be loaded because the App Transport Security policy requires "
                               "the use of a secure connection."},
                    Row{-1200, "An SSL error has occurred and a secure connection to the server cannot be made."},
                    Row{-1202, "The certificate for this server is invalid. You might be connecting to a server that "
                               "is pretending to be “models.example.org” which could put your confidential "
                               "information at risk."}));

} // namespace
