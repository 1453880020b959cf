#include "line_tap.h"

#include "link/serial_line.h"

namespace {

class TappedLine : public SerialLine {
public:
    using SerialLine::SerialLine;

    bool Exchange(const LineRequest& request, LineResponse& response) override {
        LineTap& tap = TheLineTap();
        tap.bSilent = tap.goesUnanswered && tap.goesUnanswered({request.bytes.begin(), request.bytes.end()});
        if (!tap.bSilent)
            return SerialLine::Exchange(request, response);
        if (Serial()->Write(request.bytes, request.iTimeOut_ms, false))
            tap.iWaited_ms += request.iTimeOut_ms;
        return false;
    }

    bool SwitchToDiagMode() override {
        if (!TheLineTap().bSilent)
            return SerialLine::SwitchToDiagMode();
        TheLineTap().iWaited_ms += kDiagModeTries * kDiagModeTry_ms;
        return false;
    }
};

} // namespace

LineTap& TheLineTap() {
    static LineTap tap;
    return tap;
}

void InstallLineTap() {
    ReplaceLines([](int iComPort) { return std::make_unique<TappedLine>(iComPort); });
}
