#include "foundation/StatusCodes.h"

namespace tarnwell::foundation {

const char *GetMacOSStatusCommentString(int status)
{
    static constexpr struct
    {
        int status;
        const char *comment;
    } comments[] = {
        {noErr, "no error"},
        {-33, "the folder is full"},
        {dskFulErr, "the disk is full"},
        {-35, "there is no such volume"},
        {ioErr, "the disk could not be read or written"},
        {bdNamErr, "the name is not a valid one"},
        {-38, "the file is not open"},
        {fnfErr, "the file was not found"},
        {wPrErr, "the disk is write-protected"},
        {-45, "the file is locked"},
        {-47, "the file is in use"},
        {dupFNErr, "there is a file of this name already"},
        {-49, "the file is open already"},
        {paramErr, "an argument is missing or unusable"},
        {-61, "the file is not open for writing"},
        {-108, "there is not enough memory"},
        {dirNFErr, "the folder was not found"},
        {-128, "the user cancelled"},
        {errFSNotAFolder, "the item is not a folder"},
        {pathTooLongErr, "the path is too long"},
        {afpAccessDenied, "permission denied"},
        {kLSUnknownErr, "the application could not be started"},
        {-10811, "the item is not an application"},
        {kLSApplicationNotFoundErr, "no application was found for it"},
        {-10827, "the application has no executable for this machine"},
    };
    for (const auto &entry : comments) {
        if (entry.status == status)
            return entry.comment;
    }
    return "";
}

} // namespace tarnwell::foundation
