// Shows that `kelwhich lsp` talks with the library that Visual Studio Code's client is made of, which checks each message.
// Usage: protocol.mjs MODULES, in a copy of the example.
import { spawn, execSync } from "node:child_process";
import { createRequire } from "node:module";
import { pathToFileURL } from "node:url";

const require = createRequire(pathToFileURL(`${process.argv[2]}/`));
const lsp = require("vscode-languageserver-protocol/node");

const server = spawn("kelwhich", ["lsp"], { stdio: ["pipe", "pipe", "inherit"] });
const connection = lsp.createProtocolConnection(server.stdout, server.stdin);
const problems = [];
connection.onError(([error]) => problems.push(error.message));
connection.onUnhandledNotification((message) => problems.push(`unexpected: ${message.method}`));
const published = [];
connection.onNotification(lsp.PublishDiagnosticsNotification.type, (params) => published.push(params));
connection.listen();

function expect(what, holds, shown = "") {
  console.log(`${holds ? "ok" : "NOT"}: ${what}`, shown);
  if (!holds) process.exit(1);
}
const uri = (path) => pathToFileURL(path).href;
// What is published next about a document that it is hidden.
async function hidden(path) {
  const isMeant = (params) => params.uri === uri(path);
  for (let i = 0; i < 400 && !published.some(isMeant); ++i) await new Promise((done) => setTimeout(done, 50));
  const { diagnostics } = published.splice(0, published.findIndex(isMeant) + 1).pop();
  return diagnostics.filter((found) => lsp.Diagnostic.is(found) && found.code === "hidden");
}
function open(path, text) {
  const textDocument = { uri: uri(path), languageId: "vk", version: 1, text };
  connection.sendNotification(lsp.DidOpenTextDocumentNotification.type, { textDocument });
  return (line, character) => ({ textDocument: { uri: textDocument.uri }, position: { line, character } });
}

const started = await connection.sendRequest(lsp.InitializeRequest.type, {
  processId: process.pid, rootUri: uri("."), capabilities: { window: { workDoneProgress: true } },
});
expect("initialize", started.serverInfo.name === "kelwhich" && started.capabilities.positionEncoding === "utf-16");
connection.sendNotification(lsp.InitializedNotification.type, {});

const at = open("mine/program.vk", "wave(legacy) + su");
const location = await connection.sendRequest(lsp.DefinitionRequest.type, at(0, 1));
expect("definition", lsp.Location.is(location) && location.uri === uri("mine/wave.vk"));
const all = await connection.sendRequest(lsp.DeclarationRequest.type, at(0, 1));
expect("declaration", all.length > 1 && all.every(lsp.Location.is) && all[0].uri === location.uri);
const hover = await connection.sendRequest(lsp.HoverRequest.type, at(0, 1));
expect("hover", lsp.Hover.is(hover) && hover.contents.value.includes("1 before 2"));
const list = await connection.sendRequest(lsp.CompletionRequest.type, at(0, 17));
expect("completion", list.isIncomplete === false && list.items.every((item) => lsp.TextEdit.is(item.textEdit)) && list.items[0].label === "sum");
const symbols = await connection.sendRequest(lsp.WorkspaceSymbolRequest.type, { query: "wave" });
expect("workspace symbols", symbols.length === 1 && lsp.Location.is(symbols[0].location));
const text = await connection.sendRequest(lsp.ExecuteCommandRequest.type, { command: "kelwhich.explain", arguments: ["wave"] });
expect("explain", text === execSync("kelwhich explain wave", { encoding: "utf-8" }).slice(0, text.length));

const combine = "host/library/data/combine.vk";
open(combine, "combine");
expect("a definition that nothing is wrong with has no warning", (await hidden(combine)).length === 0);
execSync("touch mine/combine.vk");
const [warning] = await hidden(combine);
expect("a file that hides it, made by the shell, is a warning:", warning !== undefined, warning?.message);
execSync("rm mine/combine.vk");
expect("which vanishes with the file", (await hidden(combine)).length === 0);

const unknown = await connection.sendRequest("none").catch((error) => error);
expect("an unknown method", unknown.code === lsp.ErrorCodes.MethodNotFound, unknown.message);
await connection.sendRequest(lsp.ShutdownRequest.type);
const ended = new Promise((done) => server.on("exit", done));
connection.sendNotification(lsp.ExitNotification.type);
expect("the server ends with 0", (await ended) === 0);
expect("no message was malformed", problems.length === 0, problems.join("; "));
