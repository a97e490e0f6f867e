// A downconverter library that lacks one of the 18 entry points (NCO). Binding looks names up and calls none of them.
extern "C" {
void Advanced() {}
void AllocInstance() {}
void Closedown() {}
void Diagnostics() {}
void DisableFractionalResampler() {}
void DownconvertInit() {}
void DownconvertRateIn() {}
void DownconvertRateOut() {}
void DownconvertRun() {}
void FirstStageExclude() {}
void FirstStageOnly() {}
void FractionalInit() {}
void FractionalProcess() {}
void IsAdvanced() {}
void PartionedFFTInit() {}
void PartionedFFTProcess() {}
void ReleaseInstance() {}
}
