#include "platform/linux/message_texts.h"

#include <algorithm>

namespace orvane::platform {

namespace {

constexpr MessageText kTexts[] = {
    {12001, "No more Internet handles can be allocated"},
    {12002, "The operation timed out"},
    {12003, "The server returned extended information"},
    {12004, "An internal error occurred in the Microsoft Internet extensions"},
    {12005, "The URL is invalid"},
    {12006, "The URL does not use a recognized protocol"},
    {12007, "The server name or address could not be resolved"},
    {12008, "A protocol with the required capabilities was not found"},
    {12009, "The option is invalid"},
    {12010, "The length is incorrect for the option type"},
    {12011, "The option value cannot be set"},
    {12012, "Microsoft Internet Extension support has been shut down"},
    {12013, "The user name was not allowed"},
    {12014, "The password was not allowed"},
    {12015, "The login request was denied"},
    {12016, "The requested operation is invalid"},
    {12017, "The operation has been canceled"},
    {12018, "The supplied handle is the wrong type for the requested operation"},
    {12019, "The handle is in the wrong state for the requested operation"},
    {12020, "The request cannot be made on a Proxy session"},
    {12021, "The registry value could not be found"},
    {12022, "The registry parameter is incorrect"},
    {12023, "Direct Internet access is not available"},
    {12024, "No context value was supplied"},
    {12025, "No status callback was supplied"},
    {12026, "There are outstanding requests"},
    {12027, "The information format is incorrect"},
    {12028, "The requested item could not be found"},
    {12029, "A connection with the server could not be established"},
    {12030, "The connection with the server was terminated abnormally"},
    {12031, "The connection with the server was reset"},
    {12032, "The action must be retried"},
    {12033, "The proxy request is invalid"},
    {12034, "User interaction is required to complete the operation"},
    {12036, "The handle already exists"},
    {12037, "The date in the certificate is invalid or has expired"},
    {12038, "The host name in the certificate is invalid or does not match"},
    {12039, "A redirect request will change a non-secure to a secure connection"},
    {12040, "A redirect request will change a secure to a non-secure connection"},
    {12041, "Mixed secure and non-secure connections"},
    {12042, "Changing to non-secure post"},
    {12043, "Data is being posted on a non-secure connection"},
    {12044, "A certificate is required to complete client authentication"},
    {12045, "The certificate authority is invalid or incorrect"},
    {12046, "Client authentication has not been correctly installed"},
    {12047, "An error has occurred in a Wininet asynchronous thread. You may need to restart"},
    {12048, "The protocol scheme has changed during a redirect operation"},
    {12049, "There are operations awaiting retry"},
    {12050, "The operation must be retried"},
    {12051, "There are no new cache containers"},
    {12052, "A security zone check indicates the operation must be retried"},
    {12053, "The SSL certificate was revoked"},
    {12054, "The server requires client authentication for a renegotiated connection"},
    {12055, "The SSL certificate contains errors"},
    {12056, "The SSL certificate could not be checked for revocation"},
    {12057, "The revocation of the security certificate for this site could not be checked"},
    {12110, "There is already an FTP request in progress on this session"},
    {12111, "The FTP session was terminated"},
    {12112, "FTP Passive mode is not available"},
    {12130, "A gopher protocol error occurred"},
    {12131, "The locator must be for a file"},
    {12132, "An error was detected while parsing the data"},
    {12133, "There is no more data"},
    {12134, "The locator is invalid"},
    {12135, "The locator type is incorrect for this operation"},
    {12136, "The request must be for a gopher+ item"},
    {12137, "The requested attribute was not found"},
    {12138, "The locator type is not recognized"},
    {12150, "The requested header was not found"},
    {12151, "The server does not support the requested protocol level"},
    {12152, "The server returned an invalid or unrecognized response"},
    {12153, "The supplied HTTP header is invalid"},
    {12154, "The request for a HTTP header is invalid"},
    {12155, "The HTTP header already exists"},
    {12156, "The HTTP redirect request failed"},
    {12157, "An error occurred in the secure channel support"},
    {12158, "The file could not be written to the cache"},
    {12159, "The TCP/IP protocol is not installed properly"},
    {12160, "The HTTP request was not redirected"},
    {12161, "The cookie requires confirmation"},
    {12162, "The cookie was declined by the server"},
    {12163, "The computer is disconnected from the network"},
    {12164, "The server is unreachable"},
    {12165, "The proxy server is unreachable"},
    {12166, "The proxy auto-configuration script is in error"},
    {12167, "Could not download the proxy auto-configuration script file"},
    {12168, "The HTTP redirect request must be confirmed by the user"},
    {12169, "The supplied certificate is invalid"},
    {12170, "The supplied certificate has been revoked"},
    {12171, "The Dialup failed because file sharing was turned on and a failure was requested if "
            "security check was needed"},
    {12172, "Initialization of the WinINet API has not occurred"},
    {12174, "Login failed and the client should display the entity body to the user"},
    {12175, "Content decoding has failed"},
};

static_assert(std::is_sorted(std::begin(kTexts), std::end(kTexts),
                             [](const MessageText& one, const MessageText& other) {
                                 return one.number < other.number;
                             }));

}  // namespace

std::span<const MessageText> networkMessages() {
    return kTexts;
}

}  // namespace orvane::platform
