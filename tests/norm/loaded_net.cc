#include "loaded_net.h"

#include "reader/parser.h"

LoadedNet::LoadedNet(const std::string& source, const LoadOptions& options)
    : net(std::make_unique<NormNet>(&table, options)) {
  ProgramFile file(source);
  EXPECT_EQ(QvParse(net.get(), &table, file.path()), 0) << source;
}

Exp* LoadedNet::final(const char* name) {
  return net->final_exp(table.find("%s", name));
}
