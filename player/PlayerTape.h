// PlayerTape.h - the player's --record and --replay: a tape kernel between
// the game and the soft kernel, and the soft kernel's clock and input routed
// through it.
#ifndef QUINDLE_PLAYER_TAPE_H
#define QUINDLE_PLAYER_TAPE_H

#include "SoftKernel.h"
#include "TapeKernel.h"

#include <memory>
#include <string>
#include <vector>

// Where a window session records by default: a new tape in
// "$XDG_DATA_HOME/quindle/<title>/" (~/.local/share without it), the older
// ones beyond the last ten removed. Empty, with `error`, when there is none.
std::string SessionTapePath(const std::string& title, std::string* error);

class PlayerTape : public SoftClockInputSeam {
public:
    explicit PlayerTape(SoftKernel& kernel) : mSoft(kernel), mTape(kernel) {}

    // Starts recording to `record` or replaying `replay` (neither: the run is
    // plain). A replay takes the recorded step and game arguments over. Returns
    // 0, or the status to exit with after writing why on the error stream.
    int Open(const std::string& record, const std::string& replay, bool haveScript, const std::string& title,
             const std::string& library, bool window, std::uint32_t* step, std::vector<char*>* gameArgs);
    // The kernel the game is given.
    KernelServices* Kernel();
    bool Replaying() const { return mTape.Replaying(); }
    // Replaying: every frame of the tape has been played.
    bool AtEnd() const { return mTape.ReplayAtEnd(); }
    // Replaying a session tape cut before a quick save or restore, at its
    // end: the recorded run went on untaped, so the game is not finished.
    bool AtCut() const { return AtEnd() && mReader.Ending() == TapeEnding::kCut; }
    // Installs the library's check notice: the report is shown (in a window,
    // as a dialog), the tape ended there (recording) or compared with it
    // (replaying), and the crash report adds where the game was.
    void WatchChecks(bool window);
    // The run ends now with a report (an error notice, a crash): recording,
    // the tape is finished with it; replaying, it is compared with the tape's
    // end. 0, or 4 when the recorded run did not end so (said on the error
    // stream).
    int EndNow(TapeEnding ending, const std::string& report);
    // Replaying: the recorded run ended here with this report.
    bool ReplayEndsHere(const std::string& report)
    {
        return mTape.Replaying() && mTape.EndNow(mReader.Ending(), report);
    }
    // For the crash report: ends the tape for a crash or a kill by `signal`.
    static int EndBySignal(int signal, const char* what, void* tape);
    // The tape being recorded, or empty.
    const std::string& RecordingPath() const { return mTape.Recording() ? mPath : kNone; }
    // The run is over: the status to exit with, given the run's own.
    int Finish(TapeEnding ending, int status);

    std::uint32_t Clock(std::uint32_t reading) override { return mTape.HostClock(reading); }
    bool Input(bool found, SoftInputEvent* event) override;

private:
    SoftKernel& mSoft;
    TapeKernel mTape;
    TapeReader mReader;
    std::string mPath;
    bool mActive = false;
    std::vector<std::string> mArgs;
    static const std::string kNone;
};

#endif
