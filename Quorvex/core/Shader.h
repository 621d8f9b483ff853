#pragma once

namespace KOVA::Quorvex {

// Builds a program object from a fragment and, unless null, a vertex shader. initShader must have run and the shader
// capability be there. The shader objects go with the program. Compile and link results are not checked: a program that
// failed draws nothing. The caller deletes the program with DeleteProgram.
unsigned int BuildProgram(const char* vertexSource, const char* fragmentSource);

// Makes a program current; 0 is the fixed-function pipeline. Nothing happens without the entry points.
void UseProgram(unsigned int program);
unsigned int GetCurrentProgram();

void DeleteProgram(unsigned int program);

// Makes a texture unit the active one. Nothing happens where there is only one.
void SelectTextureUnit(unsigned int unit);

} // namespace KOVA::Quorvex
