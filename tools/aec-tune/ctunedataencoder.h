// Encodes module values into the bytes of the Data section: records in line, arrays and strings as referenced blocks.
#ifndef AECTUNE_CTUNEDATAENCODER_H
#define AECTUNE_CTUNEDATAENCODER_H

#include <map>
#include <vector>

#include "ctunebytewriter.h"
#include "ctuneformat.h"
#include "ctunemessages.h"
#include "tunesourcemodel.h"

namespace AecTune
{

class CTuneDataEncoder
{
public:
    // firstBlockId: the table ID of the first out-of-line block (IDs run on from there).
    CTuneDataEncoder(const TuneSource* pSource, const CTuneFormat* pFormat, UINT32 firstBlockId,
                     CTuneMessages* pMessages);

    // Encodes one module instance's values; false after reporting bad values.
    bool EncodeModule(const TuneModule& module, const TuneModuleInstance& instance, std::vector<UINT8>* pData);

    // The out-of-line blocks in ID order; equal blocks are stored once and share an ID.
    const std::vector<std::vector<UINT8>>& Blocks() const;

private:
    bool EncodeStruct(size_t structIndex, const Json* pValue, const std::string& path, CTuneByteWriter* pOut);
    bool EncodeMember(const TuneMember& member, const Json* pValue, const std::string& path, CTuneByteWriter* pOut);
    // Elements of an array (or one element) back to back, as they stand in line or in a block.
    bool EncodeElements(const TuneMember& member, const std::vector<Json>& elements, const std::string& path,
                        CTuneByteWriter* pOut);
    bool EncodeString(const Json* pValue, const std::string& path, CTuneByteWriter* pOut);
    bool ScalarBytes(const TuneMember& member, const Json* pValue, const std::string& path, UINT8* pBytes);
    // The elements that a value gives for an array member, in storage order (a null Json stands for zero).
    bool Flatten(const TuneMember& member, const Json* pValue, const std::string& path, std::vector<Json>* pElements);
    UINT32 AddBlock(const std::vector<UINT8>& block);

    const TuneSource*                       m_pSource;
    const CTuneFormat*                      m_pFormat;
    UINT32                                  m_firstBlockId;
    CTuneMessages*                          m_pMessages;
    std::vector<std::vector<UINT8>>         m_blocks;
    std::map<std::vector<UINT8>, UINT32>    m_blockIds;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEDATAENCODER_H
