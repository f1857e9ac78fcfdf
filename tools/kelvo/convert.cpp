#include "convert.h"

#include "network.h"
#include "session.h"
#include "written_file.h"

namespace kelvo::command {

void convert(const std::string& input, const std::string& output) {
  Session session;
  session.show_on(stdout);
  if (is_network_file(input)) {
    convert_network(session, input, output);
    return;
  }
  session.read(input);
  write_file(session, output);
}

}  // namespace kelvo::command
