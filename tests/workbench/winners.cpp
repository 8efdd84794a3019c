// Prints the value of each key that wins, and what is wrong: winners PLUGIN-FOLDER METADATA FILE...

#include <workbench/check.h>
#include <workbench/layeredchip.h>
#include <workbench/session.h>

#include <iostream>

namespace {

void PrintWinners(const workbench::LayeredChip & chip)
{
    for (const workbench::LayeredKey & key : chip.mKeys) {
        for (const workbench::LayeredValue & value : key.mValues) {
            if (value.mIsWinner)
                std::cout << workbench::SubsystemName(key.mKey.mSubsystem) << ' ' << value.mName << " = "
                          << ToText(value.mValue) << " (" << NameOf(value.mStore) << ")\n";
        }
    }
}

}   // namespace

int main(int argumentCount, char ** arguments)
{
    if (argumentCount < 4)
        return 2;
    std::vector<workbench::ConfigFile> files;
    for (int i = 3; i < argumentCount; ++i)
        files.push_back({ arguments[i] });

    workbench::CFindingList findings;
    workbench::CSession session(findings);
    if (session.LoadPlugIns(arguments[1]) && session.OpenMetadata(arguments[2])) {
        session.Read(files);   // whatever could be read is there
        workbench::Check(session);
        PrintWinners(workbench::LayersAndWinners(session.Chip(), session.Watch().Chip()));
    }
    for (const workbench::Finding & finding : findings.Findings())
        std::cerr << finding.mFile << " line " << finding.mLine << ", key " << finding.mKey << ": "
                  << finding.mText << '\n';
    return findings.Findings().empty() ? 0 : 1;
}
