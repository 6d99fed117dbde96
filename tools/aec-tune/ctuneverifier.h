// Decides whether a parameter file is sound, from what the parameter store reported while reading it.
#ifndef AECTUNE_CTUNEVERIFIER_H
#define AECTUNE_CTUNEVERIFIER_H

#include <string>
#include <vector>

#include "ctunefilereader.h"

namespace AecTune
{

class CTuneVerifier
{
public:
    // Collects what is wrong (problems) and what a reader accepts but is worth knowing (warnings).
    static void Check(const TuneFileContents& contents, std::vector<std::string>* pProblems,
                      std::vector<std::string>* pWarnings);
};

} // namespace AecTune

#endif // AECTUNE_CTUNEVERIFIER_H
