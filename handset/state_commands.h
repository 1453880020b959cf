// The simulated handset's general commands, by source file. The table in state_commands.cpp says which
// requests they answer.
#pragma once

namespace handset {

struct State;
class RequestReader;
class AnswerWriter;

// Each reads the fields of its request after the prefix in the table, carries out the request, and appends to
// a response that begins with the same prefix. False: the request is too short.

// nv_items.cpp
bool AnswerNvRead(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerNvWrite(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerNvBatch(State& phone, RequestReader& in, AnswerWriter& answer);
// memory.cpp
bool AnswerPeek8(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerPeek16(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerPeek32(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerPoke8(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerPoke16(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerPoke32(State& phone, RequestReader& in, AnswerWriter& answer);
// traffic_masks.cpp
bool AnswerLogMask(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerMessageLevel(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerMessageFilter(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerEventControl(State& phone, RequestReader& in, AnswerWriter& answer);
// radio_tests.cpp
bool AnswerFtmLog(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerGsmTest(State& phone, RequestReader& in, AnswerWriter& answer);
bool AnswerWcdmaTest(State& phone, RequestReader& in, AnswerWriter& answer);
// delayed.cpp
bool AnswerDelayed(State& phone, RequestReader& in, AnswerWriter& answer);
// peripherals.cpp
bool AnswerCamera(State& state, RequestReader& in, AnswerWriter& answer);
bool AnswerAudio(State& state, RequestReader& in, AnswerWriter& answer);
bool AnswerBluetooth(State& state, RequestReader& in, AnswerWriter& answer);

} // namespace handset
