// Shows that `kelwhich lsp` talks with the library that Visual Studio Code's client is made of, which checks each message,
// and measures it. Usage: protocol.mjs MODULES small|large [REQUESTS], in the folder of an installation.
import { spawn, execSync } from "node:child_process";
import { readFileSync } from "node:fs";
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
async function next() {
  for (let i = 0; i < 400 && published.length === 0; ++i) await new Promise((done) => setTimeout(done, 50));
  return published.shift();
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

async function small() {
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
  published.length = 0;
  open("mine/@Shape/area.vk", "a");
  const { diagnostics } = await next();
  expect("diagnostics", diagnostics.length === 1 && lsp.Diagnostic.is(diagnostics[0]), diagnostics[0].message);
  const unknown = await connection.sendRequest("none").catch((error) => error);
  expect("an unknown method", unknown.code === lsp.ErrorCodes.MethodNotFound, unknown.message);
}

async function large(requests) {
  const memory = () => Number(/VmRSS:\s*(\d+)/.exec(readFileSync(`/proc/${server.pid}/status`, "utf-8"))[1]);
  const names = Array.from({ length: 1000 }, (_, i) => `name_${i * 7 % 5000}`);
  const at = open("program.vk", names.join("\n"));
  const times = [];
  let first = 0;
  for (let i = 0; i < requests; ++i) {
    const type = i % 2 === 0 ? lsp.DefinitionRequest.type : lsp.HoverRequest.type;
    const begin = performance.now();
    const answer = await connection.sendRequest(type, at(i % names.length, 3));
    times.push(performance.now() - begin);
    if (answer === null) expect(`an answer to ${names[i % names.length]}`, false);
    if (i === Math.min(10000, requests / 2)) first = memory();
  }
  const sorted = times.slice(0, 10000).sort((a, b) => a - b);
  const percentile = (part) => sorted[Math.floor(sorted.length * part)].toFixed(2);
  console.log(`${sorted.length} of definition and hover: median ${percentile(0.5)} ms, 99 % within ${percentile(0.99)} ms`);
  expect("the 99th percentile is at most 2 ms", percentile(0.99) <= 2);
  expect(`${requests} requests leave memory where it was`, memory() <= first * 1.05, `${first} KB, then ${memory()} KB`);
}

await (process.argv[3] === "small" ? small() : large(Number(process.argv[4])));
await connection.sendRequest(lsp.ShutdownRequest.type);
const ended = new Promise((done) => server.on("exit", done));
connection.sendNotification(lsp.ExitNotification.type);
expect("the server ends with 0", (await ended) === 0);
expect("no message was malformed", problems.length === 0, problems.join("; "));
