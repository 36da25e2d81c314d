#include "zylViewBackdrop.h"

#include "zylViewError.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

namespace {
// One triangle that covers the window; no vertex data needed.
constexpr const char* VertexShader = R"(#version 150
out float height;
void main()
{
  vec2 corner = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
  height = 0.5 * (corner.y + 1.0);
  gl_Position = vec4(corner, 1.0, 1.0);
})";

// Noise of half a level of gray hides the steps of eight-bit colors.
constexpr const char* FragmentShader = R"(#version 150
uniform vec3 top;
uniform vec3 bottom;
in float height;
out vec4 color;
void main()
{
  float noise = fract(sin(dot(gl_FragCoord.xy, vec2(12.9898, 78.233))) * 43758.5453) - 0.5;
  color = vec4(mix(bottom, top, smoothstep(0.0, 1.0, height)) + noise / 255.0, 1.0);
})";

unsigned int Compile(unsigned int program, unsigned int type, const char* source)
{
  const unsigned int shader = glCreateShader(type);
  glShaderSource(shader, 1, &source, nullptr);
  glCompileShader(shader);
  glAttachShader(program, shader);
  return shader;
}
} // namespace

//--------------------------------------------------------------------------------------------------
unsigned int zylBuildProgram(const char* fragmentShader, const char* vertexShader)
{
  const unsigned int program = glCreateProgram();
  const unsigned int vertex =
    Compile(program, GL_VERTEX_SHADER, vertexShader != nullptr ? vertexShader : VertexShader);
  const unsigned int fragment = Compile(program, GL_FRAGMENT_SHADER, fragmentShader);
  glLinkProgram(program);
  glDeleteShader(vertex);
  glDeleteShader(fragment);
  int linked = 0;
  glGetProgramiv(program, GL_LINK_STATUS, &linked);
  if (linked == 0)
  {
    throw zylViewError(zylViewFailed, "this OpenGL cannot compile the background's shaders");
  }
  return program;
}

//--------------------------------------------------------------------------------------------------
zylViewBackdrop::zylViewBackdrop()
  : Program(zylBuildProgram(FragmentShader))
{
  glGenVertexArrays(1, &this->VertexArray);
}

//--------------------------------------------------------------------------------------------------
zylViewBackdrop::~zylViewBackdrop()
{
  glDeleteVertexArrays(1, &this->VertexArray);
  glDeleteProgram(this->Program);
}

//--------------------------------------------------------------------------------------------------
void zylViewBackdrop::Paint(int width, int height, const std::array<double, 3>& top,
  const std::array<double, 3>& bottom) const
{
  glViewport(0, 0, width, height);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glDisable(GL_DEPTH_TEST);
  glUseProgram(this->Program);
  glUniform3f(glGetUniformLocation(this->Program, "top"), top[0], top[1], top[2]);
  glUniform3f(glGetUniformLocation(this->Program, "bottom"), bottom[0], bottom[1], bottom[2]);
  glBindVertexArray(this->VertexArray);
  glDrawArrays(GL_TRIANGLES, 0, 3);
  glBindVertexArray(0);
  glUseProgram(0);
  glEnable(GL_DEPTH_TEST);
}
